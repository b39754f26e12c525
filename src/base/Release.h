#pragma once

/// Lets std::unique_ptr own what a C library has made: std::unique_ptr<Thing, Release<freeThing>>.
template <auto release>
struct Release
{
    template <typename Type>
    void operator()(Type* object) const
    {
        release(object);
    }
};
