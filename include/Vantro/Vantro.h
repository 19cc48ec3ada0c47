// Vantro: tells a Mac application which privacy permissions it holds, asks
// for them, and leads the user to the settings where the system has no
// prompt of its own.

#import <Foundation/Foundation.h>

/// The framework's release as a number, major + minor / 100 + patch / 10000
/// (1.0203 for 1.2.3), which orders releases while minor and patch stay
/// below 100.
FOUNDATION_EXPORT const double VantroVersionNumber;
/// The framework's release, "major.minor.patch"; also the framework bundle's
/// CFBundleShortVersionString.
FOUNDATION_EXPORT NSString *const VantroVersionString;

#import <Vantro/VantroPrivacy.h>
#import <Vantro/VantroRequestStatusCenter.h>
#import <Vantro/VantroGuide.h>
#import <Vantro/VantroViewController.h>
#import <Vantro/VantroRequestButtonTableCellView.h>
#import <Vantro/VantroWindow.h>
#import <Vantro/VantroContentView.h>
#import <Vantro/VantroView.h>
#import <Vantro/VantroArrowView.h>
#import <Vantro/ZVMainBundleIconImageView.h>
#import <Vantro/VantroWindowController.h>
