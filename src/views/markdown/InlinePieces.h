#pragma once

#include "InlineMarkdown.h"

#include <deque>

/// The pieces that a text is cut into while its inline Markdown is read, and CommonMark's stack of
/// emphasis delimiters over them. Part of InlineMarkdown; one thread.
class InlinePieces
{
public:
    /// Appends text that outlives this object; returns the piece's number.
    qsizetype addText(QStringView text);
    void addCode(QStringView code);
    void addAutolink(QStringView text, const QString& address);

    /// Appends a copy of `text`.
    void addOwned(const QString& text);

    /// Appends the run of `length` asterisks or underscores at `position` of `text`.
    void addDelimiters(QStringView text, qsizetype position, qsizetype length);

    qsizetype delimiterCount() const { return static_cast<qsizetype>(m_delimiters.size()); }

    /// Pairs the delimiters from number `bottom` on, and forgets them. In linear time.
    void resolveEmphasis(qsizetype bottom);

    /// Makes a link of what comes after the piece `first`, which disappears; where `address` is
    /// empty, text.
    void addLink(qsizetype first, const QString& address);

    /// What the pieces show.
    std::vector<InlineMarkdown::Run> runs() const;

private:
    /// Its order: what ends here, the text, what begins here.
    struct Piece
    {
        QStringView text;
        int closedEmphasis = 0; // how many
        int closedStrong = 0;
        int openedEmphasis = 0;
        int openedStrong = 0;
        int link = noLink; // from here on: a number in m_addresses, `noLink` or `sameLink`
        bool isCode = false;
    };

    struct Delimiter
    {
        qsizetype piece;
        qsizetype length; // as written, for the rule of three
        QChar character;
        bool canOpen;
        bool canClose;
        qsizetype previous; // of those that are left, or -1
        qsizetype next;
    };

    static constexpr int sameLink = -1;
    static constexpr int noLink = -2;

    Piece& piece(qsizetype number) { return m_pieces[static_cast<std::size_t>(number)]; }
    Delimiter& delimiter(qsizetype number)
    {
        return m_delimiters[static_cast<std::size_t>(number)];
    }
    qsizetype add(const Piece& piece);
    int addAddress(const QString& address);
    qsizetype findOpener(qsizetype closer, qsizetype floor);
    void pair(qsizetype opener, qsizetype closer);
    void unlink(qsizetype number);

    std::vector<Piece> m_pieces;
    std::vector<Delimiter> m_delimiters;
    std::vector<QString> m_addresses;
    std::deque<QString> m_owned; // a deque, because pieces have views of them
};
