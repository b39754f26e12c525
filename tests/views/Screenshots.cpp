#include "DropZone.h"
#include "FocusRing.h"
#include "Icon.h"
#include "Label.h"
#include "LinkButton.h"
#include "ProgressBar.h"
#include "PushButton.h"
#include "SegmentedControl.h"
#include "Spinner.h"
#include "StopSlider.h"
#include "SummaryView.h"
#include "TextEditor.h"
#include "TextField.h"
#include "Theme.h"
#include "ViewPictures.h"

#include <QApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QMimeData>
#include <QPainter>
#include <QTest>
#include <QVBoxLayout>

#include <array>
#include <cstdio>

/// Draws every view and every control in every state, and every icon, into PNG files, to be looked
/// at.
namespace {

constexpr int spacing = 10;
constexpr int padding = 16;

constexpr std::array symbols = {
    Symbol::quotation,     Symbol::clipboard,  Symbol::document,     Symbol::globe,
    Symbol::viewfinder,    Symbol::window,     Symbol::display,      Symbol::rectangleViewfinder,
    Symbol::trayArrow,     Symbol::copy,       Symbol::notePlus,     Symbol::twoArrows,
    Symbol::documentArrow, Symbol::lockShield, Symbol::circledArrow,
};

const char* const summary =
    "## Notes\n\n"
    "- **Budget:** the project gets *12 %* more, and the schedule moves by two weeks because of "
    "the [report](https://a.example) that `audit.txt` names\n"
    "- [ ] Write to the board \U0001F4EC\n- [x] Ship it\n\nA paragraph that ends the summary.";

QHBoxLayout* row(QVBoxLayout& column, std::initializer_list<QWidget*> widgets)
{
    auto* const layout = new QHBoxLayout;
    layout->setSpacing(8);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    column.addLayout(layout);
    return layout;
}

void hover(QWidget& widget)
{
    QHoverEvent event(QEvent::HoverEnter, QPointF(4, 4), QPointF(4, 4), QPointF(-1, -1));
    QApplication::sendEvent(&widget, &event);
}

void press(QWidget& widget)
{
    QTest::mousePress(&widget, Qt::LeftButton);
}

std::vector<SegmentedControl::Choice> tabs()
{
    return {{QStringLiteral("Clipboard"), Symbol::clipboard},
            {QStringLiteral("Document"), Symbol::document},
            {QStringLiteral("Web"), Symbol::globe},
            {QStringLiteral("Capture"), Symbol::viewfinder}};
}

std::vector<SegmentedControl::Choice> modes()
{
    return {{QStringLiteral("3 Bullets")},
            {QStringLiteral("Executive")},
            {QStringLiteral("TL;DR")},
            {QStringLiteral("Actions")}};
}

/// In the order: at rest, hovered, pressed, disabled.
template <typename Make>
void addStates(QVBoxLayout& column, Make make)
{
    QWidget* const rest = make();
    QWidget* const hovered = make();
    QWidget* const pressed = make();
    QWidget* const disabled = make();
    row(column, {rest, hovered, pressed, disabled})->addStretch();
    hover(*hovered);
    press(*pressed);
    disabled->setEnabled(false);
}

void addButtons(QVBoxLayout& column, const Theme& theme)
{
    addStates(column, [&] { return new PushButton(theme, QStringLiteral("Stop")); });
    addStates(column, [&] {
        auto* const button = new PushButton(theme, QStringLiteral("Summarize"));
        button->setDefault(true);
        return button;
    });
    addStates(column, [&] {
        auto* const button =
            new PushButton(theme, QStringLiteral("Daily Note"), nullptr, PushButton::Size::small);
        button->setSymbol(Symbol::notePlus);
        return button;
    });
    addStates(column, [&] { return new LinkButton(theme, QStringLiteral("Quit")); });
}

void addChoices(QVBoxLayout& column, const Theme& theme)
{
    auto* const sources = new SegmentedControl(theme, tabs());
    hover(*sources->findChild<QWidget*>(QStringLiteral("segment2")));
    column.addWidget(sources);
    auto* const mode = new SegmentedControl(theme, modes());
    mode->setIndex(2);
    column.addWidget(mode);
    auto* const disabled = new SegmentedControl(theme, modes());
    disabled->setEnabled(false);
    column.addWidget(disabled);
    std::array<StopSlider*, 4> sliders{};
    for (std::size_t i = 0; i < sliders.size(); ++i) {
        sliders[i] = new StopSlider(theme);
        sliders[i]->setValue(static_cast<int>(i) % 3);
    }
    sliders[3]->setValue(1);
    sliders[3]->setEnabled(false);
    row(column,
        {new Label(theme, TextStyle::caption, ColorRole::secondary, QStringLiteral("Length")),
         sliders[0], sliders[1], sliders[2], sliders[3],
         new Label(theme, TextStyle::boldCaption, ColorRole::label, QStringLiteral("Balanced"))});
}

void addTexts(QVBoxLayout& column, const Theme& theme)
{
    auto* const empty = new TextField(theme);
    empty->setPlaceholderText(QStringLiteral("https://example.com/article"));
    auto* const filled = new TextField(theme);
    filled->setText(QStringLiteral("https://a.example/filled"));
    row(column, {empty, filled});

    auto* const editor = new TextEditor(theme);
    editor->describe(QStringLiteral("Paste or type text here…"));
    auto* const written = new TextEditor(theme);
    written->setText(QStringLiteral("Some text.\n").repeated(20));
    for (TextEditor* area : {editor, written})
        area->setFixedHeight(90);
    row(column, {editor, written});

    auto* const zone = new DropZone(theme);
    auto* const target = new DropZone(theme);
    auto* const over = new QVBoxLayout(zone);
    over->addWidget(new Label(theme, TextStyle::callout, ColorRole::label,
                              QStringLiteral("Drop a PDF, TXT, DOCX, RTF or image here")),
                    0, Qt::AlignCenter);
    for (DropZone* area : {zone, target})
        area->setFixedHeight(60);
    row(column, {zone, target});
    QMimeData* const file = new QMimeData;
    file->setParent(target);
    file->setUrls({QUrl(QStringLiteral("file:///a.txt"))});
    QDragEnterEvent enter({}, Qt::CopyAction, file, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);

    auto* const area = new FramedArea(theme);
    area->setFixedHeight(170);
    auto* const inside = new QVBoxLayout(area);
    inside->setContentsMargins(1, 1, 1, 1);
    auto* const view = new SummaryView(theme, [](const QUrl&) {});
    view->setMarkdown(QString::fromUtf8(summary));
    inside->addWidget(view);
    FocusRing::outline(*view, *area, FramedArea::radius);
    column.addWidget(area);
}

void addLabels(QVBoxLayout& column, const Theme& theme)
{
    const auto label = [&](TextStyle style, ColorRole role, const char* text) {
        return new Label(theme, style, role, QString::fromUtf8(text));
    };
    row(column, {label(TextStyle::title, ColorRole::label, "Title"),
                 label(TextStyle::headline, ColorRole::label, "Pithwise"),
                 label(TextStyle::body, ColorRole::label, "Body"),
                 label(TextStyle::callout, ColorRole::label, "Callout")});
    row(column, {label(TextStyle::caption, ColorRole::secondary, "Caption"),
                 label(TextStyle::smallCaption, ColorRole::secondary, "Hotkey: Ctrl+Alt+S"),
                 label(TextStyle::callout, ColorRole::tertiary, "Tertiary"),
                 label(TextStyle::caption, ColorRole::error, "An error.")});
    auto* const bar = new ProgressBar(theme);
    bar->setFraction(0.57);
    auto* const begun = new ProgressBar(theme);
    begun->setFraction(0.001);
    row(column, {bar, begun, new Spinner(theme)});
}

void save(QWidget& widget, qreal scale, const QString& file)
{
    QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    widget.render(&image);
    if (!image.save(file))
        std::fprintf(stderr, "Could not write %s\n", qPrintable(file));
}

/// The part of the gallery around every control that takes the focus, while it has it.
void saveFocus(QWidget& gallery, const QString& file)
{
    constexpr int margin = 6;
    constexpr qreal scale = 2;
    QImage image(QSize(460, 1000) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(gallery.palette().color(QPalette::Window));
    QPainter painter(&image);
    int y = 0;
    QSet<QWidget*> seen;
    for (QWidget* widget = gallery.nextInFocusChain(); !seen.contains(widget);
         widget = widget->nextInFocusChain()) {
        seen.insert(widget);
        if (!widget->isEnabled() || !(widget->focusPolicy() & Qt::TabFocus))
            continue;
        widget->setFocus(Qt::TabFocusReason);
        QWidget* shape = qobject_cast<QSlider*>(widget) ? widget : gallery.focusWidget();
        while (shape->parentWidget() != &gallery && shape->height() < 24)
            shape = shape->parentWidget();
        const QRect area = QRect(shape->mapTo(&gallery, QPoint()), shape->size())
                               .adjusted(-margin, -margin, margin, margin);
        gallery.render(&painter, QPoint(0, y), area);
        y += area.height();
    }
    painter.end();
    image.save(file);
}

void saveGallery(Theme& theme, const QDir& folder, const QString& name)
{
    QWidget gallery;
    theme.applyTo(gallery);
    gallery.setFixedWidth(460);
    auto* const column = new QVBoxLayout(&gallery);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(spacing);
    addLabels(*column, theme);
    addButtons(*column, theme);
    addChoices(*column, theme);
    addTexts(*column, theme);
    new FocusRing(theme, gallery);
    gallery.show();
    gallery.activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(&gallery));
    for (const qreal scale : {1.0, 1.5, 2.0})
        save(gallery, scale,
             folder.filePath(QStringLiteral("controls-%1-%2x.png").arg(name).arg(scale)));
    saveFocus(gallery, folder.filePath(QStringLiteral("focus-%1.png").arg(name)));
}

/// A row of all icons for each size.
void saveIcons(const Theme& theme, qreal scale, const QString& file)
{
    constexpr std::array sizes = {16, 24, 42};
    constexpr int cell = 54;
    QImage image(QSize(cell * static_cast<int>(symbols.size()), cell * 3) * scale,
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(theme[ColorRole::window]);
    QPainter painter(&image);
    int y = 0;
    for (const int size : sizes) {
        int x = 0;
        for (const Symbol symbol : symbols) {
            const int inset = (cell - size) / 2;
            Icon::paint(painter, QPointF(x + inset, y + inset), symbol, size,
                        theme[ColorRole::label]);
            x += cell;
        }
        y += cell;
    }
    painter.end();
    image.save(file);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: views-screenshots FOLDER\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    bool isSaved = true;
    for (const bool isDark : {false, true}) {
        const QString name = isDark ? QStringLiteral("dark") : QStringLiteral("light");
        // Without motion, so that every state is whole at once.
        Theme theme({isDark, false, true, {}});
        saveGallery(theme, folder, name);
        isSaved = ViewPictures::save(theme, folder, name) && isSaved;
        for (const qreal scale : {1.0, 2.0})
            saveIcons(theme, scale,
                      folder.filePath(QStringLiteral("icons-%1-%2x.png").arg(name).arg(scale)));
        theme.setAppearance({isDark, true, true, {}});
        saveGallery(theme, folder, name + QStringLiteral("-contrast"));
    }
    if (!isSaved)
        std::fprintf(stderr, "views-screenshots: not all pictures could be written\n");
    return isSaved ? 0 : 1;
}
