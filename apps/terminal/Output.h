#pragma once

#include <QJsonDocument>
#include <QString>
#include <QStringList>

namespace Norlis::Terminal {

/// The program's standard output and standard error.
///
/// Results go to standard output, problems to standard error, one line each. On a terminal a few status lines can stand
/// below everything else; they are taken away before anything is printed and put back afterwards.
class Output {
public:
    explicit Output(bool json);
    ~Output();

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Whether results are wanted as JSON.
    bool IsJson() const;

    /// Whether status lines can be shown.
    bool HasStatusLines() const;

    /// The size of the terminal; 80 by 24 when it cannot be told.
    int Columns() const;
    int Rows() const;

    /// Whether results are shown to a person right away.
    bool IsTerminal() const;

    /// A name or path as it may appear among results: unchanged in a file or a pipe, without control characters on a
    /// terminal.
    QString Name(const QString& name) const;

    /// A line of results.
    void Line(const QString& text);

    /// Lines of results, each with its line end, written at once.
    void Lines(const QString& text);

    /// A JSON document, on a line of its own.
    void Json(const QJsonDocument& document);

    /// A problem; the program's name is put before it.
    void Error(const QString& text);

    /// Replaces the status lines. Each must be shorter than the terminal is wide.
    void SetStatus(const QStringList& lines);

    /// Why results could not be written: empty when they could. After the first failure nothing more is written.
    QString WriteError() const;

    /// Whether the reader of the results has gone, which is its good right.
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
    QStringList drawnStatus; ///< as it stands on the terminal
    int writeError = 0;      ///< an errno
};

} // namespace Norlis::Terminal
