#pragma once

#include "Themed.h"

#include <QPushButton>

/// A button that looks like a link, in the size of a caption. Main thread.
class LinkButton : public Themed<QPushButton>
{
    Q_OBJECT

public:
    static constexpr int padding = 4; // how far from the text a click still counts

    LinkButton(const Theme& theme, const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
};
