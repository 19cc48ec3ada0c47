#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Observation.h"
#include "Platform/OverlayWindow.h"

namespace vantro {

class ZVMainBundleIconImageView;

// The overlay's controller: owns the text the overlay shows and reaches the
// window and the icon view its layout connected. Observable for "inDrag",
// announced whenever the icon view's "inDrag" changes. Main thread.
class VantroWindowController : public Observable, public Observer {
public:
    // Loads the layout `nibName` ("VantroWindowController"). A layout that does
    // not load gives a controller without a window: window operations do
    // nothing and isOverlayShown stays NO.
    static std::shared_ptr<VantroWindowController> initWithWindowNibName(std::string_view nibName);
    ~VantroWindowController() override;

    const std::optional<std::string>& message() const { return message_; }
    void setMessage(std::optional<std::string> message) { message_ = std::move(message); }

    // nullptr when the layout did not load.
    OverlayWindow* window() const { return window_.get(); }
    // nullptr when the layout left the outlet unconnected.
    ZVMainBundleIconImageView* iconView() const { return iconView_.get(); }
    // The icon view's inDrag; NO without an icon view.
    bool inDrag() const;
    // "iconView.inDrag".
    static std::vector<std::string> keyPathsForValuesAffectingInDrag();

    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;
    std::string observableName() const override { return "VantroWindowController"; }

    VantroWindowController() = default;

private:
    std::optional<std::string> message_;
    std::shared_ptr<OverlayWindow> window_;
    std::shared_ptr<ZVMainBundleIconImageView> iconView_;
};

}  // namespace vantro
