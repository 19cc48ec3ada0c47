#include "Overlay/VantroView.h"

namespace vantro {

void VantroView::drawRect(const Rect& bounds, Canvas& canvas) const {
    canvas.setColor(canvas.windowBackgroundColor());
    canvas.fillRoundedRect(bounds, cornerRadius, cornerRadius);
}

}  // namespace vantro
