#pragma once

#include <QLineEdit>

class Theme;

/// A field for one line of text. Main thread.
class TextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextField(const Theme& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();

    const Theme& m_theme;
};
