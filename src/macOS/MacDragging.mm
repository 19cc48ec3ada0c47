// Dragging on the real Mac.
//
// Implements: nothing the user can see yet. The draggable icon belongs to the
// overlay, whose AppKit classes are not in the shell yet; until they are, a
// dragging session is an inert record of its settings, so the core's contract
// (a session is always returned and can be configured) holds.
// Known gaps: no drag is started (NSDraggingSession, NSDraggingSource).

#include "macOS/MacAreas.h"

namespace vantro::mac {

namespace {

class InertDraggingSession final : public DraggingSession {
public:
    void setAnimatesToStartingPositionsOnCancelOrFail(bool animates) override { animates_ = animates; }
    bool animatesToStartingPositionsOnCancelOrFail() const override { return animates_; }
    void setDraggingFormation(long formation) override { formation_ = formation; }
    long draggingFormation() const override { return formation_; }

private:
    bool animates_ = true;
    long formation_ = NSDraggingFormationDefault;
};

class MacDragging final : public Dragging {
public:
    std::shared_ptr<DraggingSession> beginDraggingSession(const std::vector<DraggingItem>& items, const Event& event,
                                                          std::weak_ptr<DraggingSource> source) override {
        (void)items;
        (void)event;
        (void)source;
        return std::make_shared<InertDraggingSession>();
    }
};

}  // namespace

std::unique_ptr<Dragging> makeDragging() { return std::make_unique<MacDragging>(); }

}  // namespace vantro::mac
