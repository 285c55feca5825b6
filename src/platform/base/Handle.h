#pragma once
#include "platform/base/Exceptions.h"

#include <QString>

#include <memory>

// A reference to a platform object that may be nil. Copies share the object; using a nil
// handle throws NilObjectException instead of crashing, as the product's objects do. A nil
// handle can say why it is nil ("“a.jpg” could not be read ..."), and then that is the
// exception's text.
template <class T>
class Handle {
public:
    Handle() = default;
    Handle(std::nullptr_t) {}
    explicit Handle(std::shared_ptr<T> p) : p_(std::move(p)) {}

    static Handle nil(const QString& why)
    {
        Handle h;
        h.why_ = std::make_shared<const QString>(why);
        return h;
    }

    template <class... Args>
    static Handle make(Args&&... args) { return Handle(std::make_shared<T>(std::forward<Args>(args)...)); }

    bool isNil() const { return !p_; }
    QString whyNil() const { return p_ || !why_ ? QString() : *why_; }
    explicit operator bool() const { return bool(p_); }
    T* operator->() const { return &get(); }
    T& operator*() const { return get(); }
    T& get() const
    {
        if (!p_)
            throw why_ ? NilObjectException(*why_) : NilObjectException();
        return *p_;
    }
    bool operator==(const Handle& o) const { return p_ == o.p_; }

private:
    std::shared_ptr<T> p_;
    std::shared_ptr<const QString> why_;
};
