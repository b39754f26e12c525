#pragma once

#include <QLayout>
#include <QString>

#include <utility>

/// What views are put together with. Main thread.
namespace Make {

/// A layout of the kind `Layout` in `parent`, or for another layout if that is null.
template <typename Layout>
Layout* layout(QWidget* parent, int spacing, const QMargins& margins = {})
{
    auto* const made = new Layout(parent);
    made->setContentsMargins(margins);
    made->setSpacing(spacing);
    return made;
}

/// A widget that is found by this name, made of the arguments that follow. One of them is its
/// parent, which owns it.
template <typename Widget, typename... Arguments>
Widget* named(const char* name, Arguments&&... arguments)
{
    auto* const made = new Widget(std::forward<Arguments>(arguments)...);
    made->setObjectName(QString::fromUtf8(name));
    return made;
}

} // namespace Make
