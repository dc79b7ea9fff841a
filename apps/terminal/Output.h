#pragma once

#include <QJsonDocument>
#include <QString>
#include <QStringList>

namespace Norlis::Terminal {

/// The program's standard output and standard error.
///
/// Results go to standard output, errors to standard error, one per line. On a terminal a few status lines can be shown
/// below everything else; they are erased before anything is printed and drawn again afterwards.
class Output {
public:
    explicit Output(bool json);
    ~Output();

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Whether results are printed as JSON.
    bool IsJson() const;

    /// The size of the terminal; 80 by 24 if it is unknown.
    int Columns() const;
    int Rows() const;

    /// Whether results go directly to a terminal.
    bool IsTerminal() const;

    /// A line of results. Names and paths in it are Printable.
    void Line(const QString& text);

    /// Several lines of results, each ending in a newline, written at once.
    void Lines(const QString& text);

    /// A JSON document, on a line of its own.
    void Json(const QJsonDocument& document);

    /// An error message; the program's name is put in front of it.
    void Error(const QString& text);

    /// Replaces the status lines. Each must be shorter than the terminal is wide.
    void SetStatus(const QStringList& lines);

    /// The error that kept results from being written; empty if there was none. Nothing is written after the first one.
    QString WriteError() const;

    /// Whether the reader of the results has gone, as `head` does, which is not an error.
    bool HasReaderGone() const;

private:
    bool Write(int descriptor, const QByteArray& bytes, int& error);
    void WriteResult(const QByteArray& bytes);
    void EraseStatus();
    void DrawStatus();

    const bool json;
    const bool isTerminal;
    const bool hasStatusLines;
    QStringList status;
    QStringList drawnStatus; ///< as shown on the terminal
    int writeError = 0;      ///< an errno
};

} // namespace Norlis::Terminal
