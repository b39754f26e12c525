#include "Announcement.h"

#include "AccessibleRole.h"

Announcement::Announcement(QWidget* window) : QWidget(window)
{
    AccessibleRole::set(*this, QAccessible::Notification);
    setObjectName(QStringLiteral("announcement"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(1, 1);
    hide();
}

void Announcement::tell(const QWidget& widget, const QString& text)
{
    QWidget* const window = widget.window();
    auto* announcement = window->findChild<Announcement*>({}, Qt::FindDirectChildrenOnly);
    if (!announcement)
        announcement = new Announcement(window);
    announcement->hide();
    announcement->setAccessibleName(text);
    announcement->show();
}

/// Keeps the announcement from being shown, and told, again with the window.
void Announcement::hideEvent(QHideEvent*)
{
    hide();
}
