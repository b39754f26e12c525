#pragma once

class QString;
class QWidget;

/// What screen readers are told without being asked. Main thread.
namespace Announcement {

/// Tells `text` on behalf of `widget`, which bears it as its accessible name from now on.
void tell(QWidget& widget, const QString& text);

} // namespace Announcement
