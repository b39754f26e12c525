#pragma once

#include "DesktopSession.h"

#include <QImage>

#include <gtest/gtest.h>

/// A grey desktop, on which an overlay shows by being darker, and a user's hand.
class OverlayTest : public testing::Test
{
public:
    ~OverlayTest() override;

protected:
    static constexpr int grey = 0xC0;

    explicit OverlayTest(const DesktopSession::Options& options = {});

    /// What lies in the folder for temporary files.
    QStringList files() const;

    QImage screen();

    bool isDimmed();

    /// From then on the user could drag.
    void waitForOverlay();

    void moveTo(int x, int y);

    /// Without letting go.
    void drag(QPoint from, QPoint to);

    QByteArray focused();

    DesktopSession m_session;

private:
    int cornerGrey();
};
