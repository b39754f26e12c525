#include "TrayIcon.h"

#include "QuotationMark.h"
#include "TrayHost.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>

TrayIcon::TrayIcon() : m_host(TrayHost::create([this] { show(); }))
{
    QCoreApplication::instance()->installEventFilter(this);
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

/// Panels follow the desktop's theme, as the palette does.
void TrayIcon::draw()
{
    constexpr int half = 128;
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < half;
    if (m_icon)
        m_icon->setIcon(QuotationMark::icon(isDark));
}

bool TrayIcon::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ApplicationPaletteChange &&
        watched == QCoreApplication::instance())
        draw();
    return false;
}
