#include "TrayIcon.h"

#include "QuotationMark.h"
#include "Theme.h"
#include "TrayHost.h"

TrayIcon::TrayIcon(const Theme& theme)
    : m_theme(theme), m_host(TrayHost::create([this] { show(); }))
{
    connect(&theme, &Theme::changed, this, &TrayIcon::draw);
}

TrayIcon::~TrayIcon() = default;

QRect TrayIcon::geometry() const
{
    return m_icon ? m_icon->geometry() : QRect();
}

void TrayIcon::show()
{
    if (m_icon)
        return; // Qt follows from one host to the next of its kind
    m_icon.emplace();
    m_icon->setToolTip(QStringLiteral("Pithwise"));
    connect(&*m_icon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // The second of two quick clicks is a click too.
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
                    emit clicked();
            });
    draw();
    m_icon->show();
}

/// Panels follow the desktop's appearance.
void TrayIcon::draw()
{
    if (m_icon)
        m_icon->setIcon(QuotationMark::icon(m_theme.appearance().isDark));
}
