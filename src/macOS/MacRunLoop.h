#pragma once

// The NSTimer behind a timer of the real Mac's run loop.

#import <Foundation/Foundation.h>

#include <memory>

#include "Platform/RunLoop.h"

NS_ASSUME_NONNULL_BEGIN

namespace vantro::mac {

// The NSTimer that a timer made by the Mac's run loop stands for, while the
// run loop still holds it (a timer is released once invalidated or, when it
// does not repeat, once fired); nil for nullptr and for timers made elsewhere.
NSTimer* _Nullable nsTimer(const std::shared_ptr<Timer>& timer);

}  // namespace vantro::mac

NS_ASSUME_NONNULL_END
