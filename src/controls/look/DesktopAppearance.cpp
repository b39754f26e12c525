#include "DesktopAppearance.h"

#include "Contrast.h"
#include "Theme.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QEvent>
#include <QPalette>
#include <QStyle>

#include <algorithm>
#include <array>

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString gnomeGroup = QStringLiteral("org.gnome.desktop.interface");

const QString schemeKey = appearanceGroup + QStringLiteral(" color-scheme");
const QString contrastKey = appearanceGroup + QStringLiteral(" contrast");
const QString accentKey = appearanceGroup + QStringLiteral(" accent-color");
const QString motionKey = appearanceGroup + QStringLiteral(" reduced-motion");
const QString animationsKey = gnomeGroup + QStringLiteral(" enable-animations");

/// Values of the portal's color-scheme; 0 is no preference.
enum Scheme : unsigned { preferDark = 1, preferLight = 2 };

using Groups = QMap<QString, QVariantMap>;

/// A contrast from which on a palette is one for high contrast: only such themes set text in pure
/// black and white.
constexpr double highContrastRatio = 20;

/// The portal's accent colour: red, green and blue from 0 to 1. Any other value means that there is
/// none; then the result is invalid.
QColor accentColor(const QVariant& setting)
{
    const auto argument = setting.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return {};
    std::array<double, 3> channels{};
    argument.beginStructure();
    for (double& channel : channels)
        argument >> channel;
    argument.endStructure(); // even after wrong values, else Qt leaks memory
    const auto isInRange = [](double channel) { return channel >= 0 && channel <= 1; };
    if (!std::all_of(channels.begin(), channels.end(), isInRange))
        return {};
    return QColor::fromRgbF(static_cast<float>(channels[0]), static_cast<float>(channels[1]),
                            static_cast<float>(channels[2]));
}

/// The palette's highlight, unless it is only the default of Qt's style.
QColor paletteHighlight()
{
    const QColor color = QApplication::palette().color(QPalette::Highlight);
    const QColor usual = QApplication::style()->standardPalette().color(QPalette::Highlight);
    return color == usual ? QColor() : color;
}

} // namespace

DesktopAppearance::DesktopAppearance(Theme& theme, const QDBusConnection& bus) : m_theme(theme)
{
    qApp->installEventFilter(this);
    update();
    ask(bus);
}

void DesktopAppearance::ask(const QDBusConnection& bus)
{
    if (!bus.isConnected())
        return;
    QDBusConnection connection = bus;
    // The slots take whole messages. A slot with three parameters is silently not called as long
    // as nothing else in the process has made the type of the third known to Qt.
    connection.connect(service, objectPath, settingsInterface, QStringLiteral("SettingChanged"),
                       this, SLOT(takeChange(QDBusMessage)));
    QDBusMessage call = QDBusMessage::createMethodCall(service, objectPath, settingsInterface,
                                                       QStringLiteral("ReadAll"));
    call << QStringList{appearanceGroup, gnomeGroup};
    connection.callWithCallback(call, this, SLOT(takeAll(QDBusMessage)));
}

void DesktopAppearance::takeAll(const QDBusMessage& reply)
{
    if (reply.signature() != QLatin1String("a{sa{sv}}"))
        return;
    const auto groups = qdbus_cast<Groups>(reply.arguments().constFirst());
    for (auto group = groups.begin(); group != groups.end(); ++group) {
        for (auto setting = group->begin(); setting != group->end(); ++setting)
            take(group.key(), setting.key(), setting.value());
    }
    update();
}

void DesktopAppearance::takeChange(const QDBusMessage& message)
{
    const QVariantList arguments = message.arguments();
    if (message.signature() != QLatin1String("ssv"))
        return;
    take(arguments[0].toString(), arguments[1].toString(),
         arguments[2].value<QDBusVariant>().variant());
    update();
}

void DesktopAppearance::take(const QString& group, const QString& key, const QVariant& value)
{
    if (group == appearanceGroup || group == gnomeGroup)
        m_settings[group + QLatin1Char(' ') + key] = value;
}

void DesktopAppearance::update()
{
    const QPalette palette = QApplication::palette();
    const QColor ground = palette.color(QPalette::Window);
    Appearance appearance;
    const unsigned scheme = m_settings.value(schemeKey).toUInt();
    appearance.isDark = scheme == preferDark || (scheme != preferLight && ground.lightness() < 128);
    appearance.isHighContrast =
        m_settings.value(contrastKey).toUInt() == 1 ||
        Contrast::ratio(palette.color(QPalette::WindowText), ground) >= highContrastRatio;
    const QStyle* const style = QApplication::style();
    appearance.isMotionReduced = m_settings.value(motionKey).toUInt() == 1 ||
                                 !m_settings.value(animationsKey, true).toBool() ||
                                 style->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
    appearance.highlight = accentColor(m_settings.value(accentKey));
    if (!appearance.highlight.isValid())
        appearance.highlight = paletteHighlight();
    m_theme.setAppearance(appearance);
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        update();
    if (watched == qApp && event->type() == QEvent::ApplicationFontChange)
        m_theme.refresh();
    return false;
}
