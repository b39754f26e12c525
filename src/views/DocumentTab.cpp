#include "DocumentTab.h"

#include "AppState.h"
#include "DropZone.h"
#include "FileChooser.h"
#include "Label.h"
#include "Make.h"
#include "PushButton.h"
#include "SymbolView.h"

#include <QVBoxLayout>

static constexpr int spacing = 8;
static constexpr int symbolSize = 26;

DocumentTab::DocumentTab(AppState& state, const Theme& theme, FileChooser& chooser, QWidget* parent)
    : QWidget(parent), m_state(state)
{
    auto* const zone = Make::named<DropZone>("dropZone", theme, this);
    Make::layout<QVBoxLayout>(this, 0)->addWidget(zone);
    auto* const column = Make::layout<QVBoxLayout>(zone, spacing);
    column->addStretch();
    column->addWidget(
        new SymbolView(theme, Symbol::trayArrow, symbolSize, ColorRole::secondary, zone), 0,
        Qt::AlignHCenter);
    column->addWidget(new Label(theme, TextStyle::callout, ColorRole::label,
                                QStringLiteral("Drop a PDF, TXT, DOCX, RTF or image here"), zone),
                      0, Qt::AlignHCenter);
    auto* const choose =
        Make::named<PushButton>("chooseFile", theme, QStringLiteral("Choose File…"), zone);
    setFocusProxy(choose);
    column->addWidget(choose, 0, Qt::AlignHCenter);
    column->addStretch();

    connect(choose, &QPushButton::clicked, &chooser, &FileChooser::open);
    connect(&chooser, &FileChooser::chosen, this,
            [this](const std::filesystem::path& file) { m_state.loadFile(file); });
    // Queued, so that the program from which the file is dragged gets its answer at once.
    connect(zone, &DropZone::dropped, this, &DocumentTab::load, Qt::QueuedConnection);
}

void DocumentTab::load(const QUrl& file)
{
    // The path is taken as bytes, which need not be UTF-8. A host in the address is ignored: it is
    // this computer's own name.
    const QByteArray path =
        QByteArray::fromPercentEncoding(file.path(QUrl::FullyEncoded).toLatin1());
    if (!path.isEmpty())
        m_state.loadFile(path.toStdString());
}
