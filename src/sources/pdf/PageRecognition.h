#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QImage;
class TextRecognizer;

/// Recognises the text of many pages, several at a time.
namespace PageRecognition {

/// The pages to recognise. Each function is called on several threads; all but `create` by one
/// thread at a time.
struct Pages
{
    int count;
    /// The picture of the page with this index (from 0), a null image if there is none.
    std::function<QImage(int)> draw;
    /// Called with the index and the text of a page as soon as it is known, in any order. Without a
    /// text the page has no picture.
    std::function<void(int, std::optional<std::string>)> onText;
    /// Makes a recogniser. Called at most once on each thread.
    std::function<std::unique_ptr<TextRecognizer>()> create;
};

/// How many pages are recognised at a time on a machine with this number of processors: one for
/// each processor but two. At least two pages, and at most four, because each takes memory.
int threadCount(unsigned processors);

/// Recognises all pages. If any fail, throws the error of the first of these, in the order of the
/// pages. Blocks; any thread.
void run(const Pages& pages);

} // namespace PageRecognition
