#pragma once

#include <utility>

namespace tallyvox {

/// The value behind one published property of `Owner`, a QObject with a signal `objectWillChange`.
///
/// Every assignment, also of an equal value, announces that the owner will change, hands the new
/// value to the property's change stream, and only then stores it; the property's notification
/// follows when the value really changed.
template<typename Owner, typename T>
class Published {
public:
    using Stream = void (Owner::*)(T);
    using Notification = void (Owner::*)();

    Published(Owner& owner, T value, Stream stream, Notification changed)
        : owner_(owner), value_(std::move(value)), stream_(stream), changed_(changed) {}
    Published(const Published&) = delete;

    const T& operator()() const noexcept { return value_; }

    Published& operator=(T value) {
        owner_.objectWillChange();
        (owner_.*stream_)(value);
        const bool differs = !(value_ == value);
        value_ = std::move(value);
        if (differs)
            (owner_.*changed_)();
        return *this;
    }

private:
    Owner& owner_;
    T value_;
    Stream stream_;
    Notification changed_;
};

}
