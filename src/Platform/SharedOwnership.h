#pragma once

#include <memory>
#include <utility>

namespace vantro {

class SharedOwnership;

// Makes a T under shared ownership, handing its constructor the key that only
// this function can make.
template <class T, class... Args>
std::shared_ptr<T> makeShared(Args&&... args);

// The key to the constructors of the classes whose pending answers and
// delayed work keep them alive, or reach them, through shared ownership (the
// status center, the guide, the permission list): an instance made any other
// way, on the stack or by new, would never be kept alive by what it is
// waiting for. Such a class takes `const SharedOwnership&` as its
// constructors' first argument, and so does each subclass (`using
// Base::Base;` passes it on): both are made with makeShared<T>().
class SharedOwnership {
public:
    SharedOwnership(const SharedOwnership&) = delete;
    SharedOwnership& operator=(const SharedOwnership&) = delete;

private:
    SharedOwnership() = default;
    template <class T, class... Args>
    friend std::shared_ptr<T> makeShared(Args&&... args);
};

template <class T, class... Args>
std::shared_ptr<T> makeShared(Args&&... args) {
    return std::make_shared<T>(SharedOwnership{}, std::forward<Args>(args)...);
}

}  // namespace vantro
