#pragma once

#include "ObservableObject.h"

#include <QThread>

#include <cassert>
#include <utility>

/// A field that announces every assignment through its owner's willChange(), before the value is
/// stored. Assign only on the owner's thread.
template <typename Value>
class Published
{
public:
    /// Requires: `owner` outlives this object.
    explicit Published(ObservableObject& owner, Value value = {})
        : m_owner(owner), m_value(std::move(value))
    {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    Published& operator=(const Value& value)
    {
        assert(QThread::currentThread() == m_owner.thread());
        emit m_owner.willChange();
        m_value = value;
        return *this;
    }

    const Value& get() const { return m_value; }
    operator const Value&() const { return m_value; }
    const Value* operator->() const { return &m_value; }

private:
    ObservableObject& m_owner;
    Value m_value;
};
