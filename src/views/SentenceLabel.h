#pragma once

#include "Label.h"

/// A centred label that begins each sentence on a line of its own where they do not fit on one and
/// each fits by itself; else it wraps between any words. Main thread.
class SentenceLabel : public Label
{
    Q_OBJECT

public:
    SentenceLabel(const Theme& theme, TextStyle style, ColorRole role, const QString& text,
                  QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString broken() const;
};
