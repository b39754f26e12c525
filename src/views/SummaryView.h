#pragma once

#include "InlineMarkdown.h"

#include <QTextBrowser>
#include <QUrl>

#include <functional>

class Theme;

/// Shows a summary while it streams: only what changes is laid out again, the user's selection and
/// the place that is read stay, and the view goes along with the text only where it is at its end.
/// Main thread.
class SummaryView : public QTextBrowser
{
    Q_OBJECT

public:
    using OpenLink = std::function<void(const QUrl&)>;

    /// `openLink` is called for links that are clicked or activated with the keyboard, and only for
    /// http, https and mailto.
    SummaryView(const Theme& theme, OpenLink openLink, QWidget* parent = nullptr);

    /// Shows `markdown` (see SummaryText) in place of what is shown.
    void setMarkdown(QStringView markdown);

private:
    void follow();
    void replaceChanged(const std::vector<InlineMarkdown::Run>& runs);
    void insert(QTextCursor& cursor, const std::vector<InlineMarkdown::Run>& runs, qsizetype from,
                qsizetype to) const;
    void indentMarks(int from, int to) const;
    QTextCharFormat format(const InlineMarkdown::Run& run) const;
    void open(const QUrl& link) const;

    const Theme& m_theme;
    OpenLink m_openLink;
    std::vector<InlineMarkdown::Run> m_runs; // what is shown
};
