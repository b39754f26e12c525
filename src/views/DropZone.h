#pragma once

#include <QUrl>
#include <QWidget>

class Theme;

/// A dashed area that files are dropped on. It is highlighted while one is dragged over it. Main
/// thread.
class DropZone : public QWidget
{
    Q_OBJECT

public:
    explicit DropZone(const Theme& theme, QWidget* parent = nullptr);

    bool isHighlighted() const { return m_isHighlighted; }

signals:
    /// The first file of those dropped.
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

    const Theme& m_theme;
    bool m_isHighlighted = false;
};
