// Vantro: tells a Mac application which privacy permissions it holds, asks
// for them, and leads the user to the settings where the system has no
// prompt of its own.

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
