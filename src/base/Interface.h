#pragma once

/// The base of classes that others stand behind: they are deleted through it, and never copied as
/// no more than it.
class Interface
{
public:
    virtual ~Interface() = default;

protected:
    Interface() = default;
    Interface(const Interface&) = default;
    Interface& operator=(const Interface&) = default;
};
