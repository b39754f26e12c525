#pragma once

#include "Label.h"

/// A centred label of some sentences. If they do not fit on one line but each fits on its own, each
/// begins a new line. Otherwise the text wraps between any words. Main thread.
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
