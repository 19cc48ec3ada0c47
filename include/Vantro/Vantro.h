// Vantro: tells a Mac application which privacy permissions it holds, asks
// for them, and leads the user to the settings where the system has no
// prompt of its own.

#import <Vantro/VantroPrivacy.h>
#import <Vantro/VantroRequestStatusCenter.h>
#import <Vantro/VantroGuide.h>
