// Stand-in used only by the Mac shell type-check: Core Graphics' geometry
// structs. On the Mac (64-bit), NSPoint, NSSize and NSRect are typedefs of
// CGPoint, CGSize and CGRect, so the two spellings are one type and convert
// freely. GNUstep defines only the NS structs, so here the CG names are made
// typedefs of GNUstep's structs: the same one-type relationship, from the
// other side. CGFloat comes from GNUstep's <Foundation/NSObjCRuntime.h>
// (double on 64-bit, as on the Mac).
// Checked against developer.apple.com/documentation/foundation/nsrect ("when
// building for 64 bit ... NSRect is typedef'd to CGRect") and docs.rs
// objc2-foundation (NSRect = CGRect with origin: CGPoint, size: CGSize).
#ifndef VANTRO_MACSHELL_CGGEOMETRY_H
#define VANTRO_MACSHELL_CGGEOMETRY_H

#import <Foundation/NSGeometry.h>

typedef NSPoint CGPoint;
typedef NSSize CGSize;
typedef NSRect CGRect;

#endif
