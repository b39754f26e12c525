#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The web pages that are measured: always the same for the same size.
namespace SamplePage {

/// A page as news sites write them, of about `bytes` bytes: scripts, styles and icons, navigation,
/// an article with links and lists among teasers, a footer.
std::string news(std::size_t bytes);

struct Hostile
{
    std::string_view name;
    std::string_view piece;    // repeated
    std::string_view end = {}; // once, after it all
};

/// What a page could be made of to make a reader slow.
const std::vector<Hostile>& hostileKinds();

/// A page of `bytes` bytes, made of the pieces of `kind`.
std::string hostile(const Hostile& kind, std::size_t bytes);

} // namespace SamplePage
