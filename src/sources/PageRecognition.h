#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QImage;
class TextRecognizer;

/// The text of many pages, recognised side by side.
namespace PageRecognition {

/// Each function is called on several threads; all but `create` by one at a time.
struct Pages
{
    int count;
    /// The picture of the page of that index; a null image where there is none.
    std::function<QImage(int)> draw;
    /// Is told the text of a page as soon as it is known, in any order; none where it has no
    /// picture.
    std::function<void(int, std::optional<std::string>)> onText;
    /// Makes a recogniser; called on each thread at most once.
    std::function<std::unique_ptr<TextRecognizer>()> create;
};

/// How many pages are recognised at a time on a machine with so many processors: all but two of
/// them, at least two and at most four pages, because each takes memory.
int threadCount(unsigned processors);

/// Recognises all pages, or ends with the error of the first of those that fail. Blocks; any
/// thread.
void run(const Pages& pages);

} // namespace PageRecognition
