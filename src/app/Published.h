#pragma once

#include <QObject>
#include <QThread>

#include <cassert>
#include <utility>

/// Base class of objects that own Published fields.
class ObservableObject : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    /// A field is about to be set, perhaps to the value that it has already. It still has the old
    /// value.
    void willChange();
};

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
