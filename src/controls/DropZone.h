#pragma once

#include "Themed.h"

#include <QUrl>
#include <QWidget>

/// A dashed area to drop files on. It is highlighted while a file is dragged over it. Main thread.
class DropZone : public Themed<QWidget>
{
    Q_OBJECT

public:
    explicit DropZone(const Theme& theme, QWidget* parent = nullptr);

    bool isHighlighted() const { return m_isHighlighted; }

signals:
    /// Files were dropped; `file` is the first.
    void dropped(const QUrl& file);
    void highlighted(bool isHighlighted);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void setHighlighted(bool isHighlighted);

    bool m_isHighlighted = false;
};
