#include "Overlay/VantroWindowController.h"

#include "Overlay/ZVMainBundleIconImageView.h"
#include "Platform/HostProcess.h"

namespace vantro {

namespace {

// Compared by address: the controller's own registration on its icon view.
constexpr char VantroIconViewInDragContext[] = "VantroIconViewInDragContext";

}  // namespace

std::shared_ptr<VantroWindowController> VantroWindowController::initWithWindowNibName(std::string_view nibName) {
    auto controller = std::make_shared<VantroWindowController>();
    OverlayLayout layout = HostProcess::current().platform().windows().loadWindowNib(nibName, *controller);
    controller->window_ = std::move(layout.window);
    controller->iconView_ = std::move(layout.iconView);
    // "iconView.inDrag" affects "inDrag": the controller re-announces every
    // change of its icon view's inDrag as its own.
    if (controller->iconView_) controller->iconView_->addObserver(*controller, "inDrag", ObservingOptionNone, VantroIconViewInDragContext);
    return controller;
}

VantroWindowController::~VantroWindowController() {
    if (iconView_) iconView_->removeObserver(*this, "inDrag", VantroIconViewInDragContext);
}

std::vector<std::string> VantroWindowController::keyPathsForValuesAffectingInDrag() { return {"iconView.inDrag"}; }

bool VantroWindowController::inDrag() const { return iconView_ && iconView_->inDrag(); }

void VantroWindowController::observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) {
    if (context == VantroIconViewInDragContext && &object == iconView_.get() && keyPath == "inDrag") didChangeValueForKey("inDrag");
}

}  // namespace vantro
