#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Controls.h"
#include "Platform/Observation.h"
#include "Platform/OverlayWindow.h"

namespace vantro {

class ZVMainBundleIconImageView;

// The overlay's controller: owns the text the overlay shows and the window
// its layout made (as a window controller owns its window), and reaches the
// icon view and the message field through outlets that do not own them: the
// window's view hierarchy keeps those alive. Observable for "inDrag",
// announced whenever the icon view's "inDrag" changes and whenever another
// icon view is connected. Main thread.
class VantroWindowController : public Observable, public Observer, public std::enable_shared_from_this<VantroWindowController> {
public:
    // Loads the layout `nibName` ("VantroWindowController") and connects its
    // outlets: the window, the icon view and the message field. A layout that
    // does not load gives a controller without a window: window operations
    // do nothing and isOverlayShown stays NO.
    static std::shared_ptr<VantroWindowController> initWithWindowNibName(std::string_view nibName);
    ~VantroWindowController() override;

    // Plain accessors: the controller never copies the message into the
    // field; the layout binds the field's value to "message".
    const std::optional<std::string>& message() const { return message_; }
    // Announces "message", as a key-value-compliant setter does, so that the
    // platform's layout can show it; nothing else happens.
    void setMessage(std::optional<std::string> message) {
        message_ = std::move(message);
        didChangeValueForKey("message");
    }

    // nullptr when the layout did not load.
    OverlayWindow* window() const { return window_.get(); }

    // The layout's text field outlet; the controller's own code never reads
    // or writes it. nullptr when unconnected or once the field is gone.
    std::shared_ptr<View> unlockMessageField() const { return unlockMessageField_.lock(); }
    void setUnlockMessageField(const std::shared_ptr<View>& field) { unlockMessageField_ = field; }

    // The layout's icon view outlet, the source of inDrag. nullptr when
    // unconnected or once the icon view is gone.
    std::shared_ptr<ZVMainBundleIconImageView> iconView() const { return iconView_.lock(); }
    // Moves the controller's own "inDrag" observation from the icon view
    // connected until now (when it still exists) to `iconView`, then
    // announces "inDrag", which now follows the new icon view. Whoever made
    // `iconView` keeps it alive.
    void setIconView(const std::shared_ptr<ZVMainBundleIconImageView>& iconView);

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
    std::weak_ptr<View> unlockMessageField_;
    std::weak_ptr<ZVMainBundleIconImageView> iconView_;
};

}  // namespace vantro
