#include "TrayIcon.h"

#include "ProgramName.h"
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
        return; // Qt itself moves the icon to the next host of the same kind
    m_icon.emplace();
    m_icon->setToolTip(QString::fromUtf8(programName));
    connect(&*m_icon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // Qt reports the second of two quick clicks as a double click.
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
                    emit clicked();
            });
    draw();
    m_icon->show();
}

/// Draws the icon for the desktop's appearance, which panels follow.
void TrayIcon::draw()
{
    if (m_icon)
        m_icon->setIcon(QuotationMark::icon(m_theme.appearance().isDark));
}
