#pragma once

namespace vantro {

// NSWindowStyleMask bits the overlay's window is made with.
inline constexpr unsigned long NSWindowStyleMaskBorderless = 0;
inline constexpr unsigned long NSWindowStyleMaskNonactivatingPanel = 1ul << 7;

// The overlay's window keeps a click on it from making the host the active
// application, one way per build. The ordinary build's window answers YES to
// AppKit's private activation hook and is plainly borderless; the App Store
// build's, which may not name that hook, is a borderless non-activating panel.

// The style the window takes whatever style its maker asks for.
unsigned long vantroWindowStyleMask();
// Whether the window answers the private activation hook.
bool vantroWindowAnswersActivationHook();

}  // namespace vantro
