#pragma once
// Change notices: an Event calls its listeners in the order in which they came.
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tsRtm {

// Ends a listener's connection when it dies. Movable, not copyable; an empty one ends nothing.
class Subscription {
 public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<void> token) : token_(std::move(token)) {}
    void end() noexcept { token_.reset(); }
    explicit operator bool() const noexcept { return token_ != nullptr; }

    Subscription(Subscription&&) = default;
    Subscription& operator=(Subscription&&) = default;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

 private:
    std::shared_ptr<void> token_;
};

// An event with the arguments Args. A listener may end itself or others, connect new ones, and even end the
// event's owner's use of it while it is being raised: a call works on the list as it was. Not thread-safe, as
// all of the library.
template <class... Args>
class Event {
 public:
    using Listener = std::function<void(Args...)>;

    // The listener lives as long as the Subscription that comes back.
    [[nodiscard]] Subscription connect(Listener listener) {
        auto token = std::make_shared<Listener>(std::move(listener));
        listeners_.emplace_back(token);
        return Subscription(token);
    }

    void operator()(Args... args) const {
        if (listeners_.empty()) return;
        raise(args...);
    }

    bool connected() const noexcept {
        for (const auto& listener : listeners_)
            if (!listener.expired()) return true;
        return false;
    }

 private:
    void raise(Args... args) const {
        std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
        const auto snapshot = listeners_;
        for (const auto& weak : snapshot)
            if (const auto listener = weak.lock()) (*listener)(args...);
    }

    mutable std::vector<std::weak_ptr<Listener>> listeners_;
};

}  // namespace tsRtm
