#pragma once

#include "InlineMarkdown.h"
#include "Themed.h"

#include <QTextBrowser>
#include <QUrl>

#include <functional>

/// Shows a summary while it streams. Only what has changed is laid out again. The user's selection
/// and scroll position stay; the view scrolls along only if it is at the end of the text. Main
/// thread.
class SummaryView : public Themed<QTextBrowser>
{
    Q_OBJECT

public:
    using OpenLink = std::function<void(const QUrl&)>;

    /// `openLink` is called when a link is clicked or activated with the keyboard. Only addresses
    /// of http, https and mailto become links. Each link shows its address before it is opened.
    /// Nothing that the text names is ever loaded.
    SummaryView(const Theme& theme, OpenLink openLink, QWidget* parent = nullptr);

    /// Shows `markdown` (see SummaryText) in place of what is shown.
    void setMarkdown(QStringView markdown);

protected:
    bool focusNextPrevChild(bool next) override;
    void followTheme() final;

private:
    void replaceChanged(const std::vector<InlineMarkdown::Run>& runs);
    void insert(QTextCursor& cursor, const std::vector<InlineMarkdown::Run>& runs, qsizetype from,
                qsizetype to) const;
    void indentMarks(int from, int to) const;
    QTextCharFormat format(const InlineMarkdown::Run& run) const;
    void open(const QUrl& link) const;
    void showTarget(const QUrl& link, const QPoint& place);

    OpenLink m_openLink;
    std::vector<InlineMarkdown::Run> m_runs; // what is shown now
};
