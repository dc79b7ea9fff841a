#include "HttpDate.h"

namespace Norlis::Social {

namespace {

/// Reads a text from left to right. After the first mismatch it has failed, and every number is 0.
class Scanner {
public:
    explicit Scanner(const QByteArray& text) : at(text.begin()), end(text.end()) {}

    bool IsAtEnd() const
    {
        return at == end;
    }

    bool HasFailed() const
    {
        return failed;
    }

    void Fail()
    {
        failed = true;
        at = end;
    }

    char Next() const
    {
        return at == end ? '\0' : *at;
    }

    bool Skip(char character)
    {
        if (at == end || *at != character) {
            return false;
        }
        ++at;
        return true;
    }

    void Expect(char character)
    {
        if (!Skip(character)) {
            Fail();
        }
    }

    void Blanks()
    {
        while (Skip(' ')) {
        }
    }

    int Number(int minDigits, int maxDigits)
    {
        int number = 0;
        int digits = 0;
        while (at != end && digits < maxDigits && IsDigit(*at)) {
            number = number * 10 + (*at++ - '0');
            ++digits;
        }
        if (digits < minDigits) {
            Fail();
        }
        return failed ? 0 : number;
    }

    QByteArray Word()
    {
        const char* begin = at;
        while (at != end && IsLetter(*at)) {
            ++at;
        }
        return QByteArray::fromRawData(begin, static_cast<int>(at - begin));
    }

    static bool IsDigit(char character)
    {
        return character >= '0' && character <= '9';
    }

private:
    static bool IsLetter(char character)
    {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    }

    const char* at;
    const char* end;
    bool failed = false;
};

struct ParsedTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int seconds = 0; ///< of the day
    int milliseconds = 0;
    int offset = 0; ///< seconds by which the text is ahead of UTC
};

void ReadTime(Scanner& in, ParsedTime& time)
{
    const int hours = in.Number(1, 2);
    in.Expect(':');
    const int minutes = in.Number(2, 2);
    in.Expect(':');
    const int seconds = in.Number(2, 2); // 60 is a leap second
    if (hours > 23 || minutes > 59 || seconds > 60) {
        in.Fail();
    }
    time.seconds = (hours * 60 + minutes) * 60 + seconds;
}

/// +01:00, -0500
void ReadOffset(Scanner& in, ParsedTime& time)
{
    const int sign = in.Skip('-') ? -1 : 1;
    if (sign > 0) {
        in.Expect('+');
    }
    const int hours = in.Number(2, 2);
    in.Skip(':');
    const int minutes = in.Number(2, 2);
    if (hours > 23 || minutes > 59) {
        in.Fail();
    }
    time.offset = sign * (hours * 60 + minutes) * 60;
}

void ReadZone(Scanner& in, ParsedTime& time)
{
    in.Blanks();
    if (in.Next() == '+' || in.Next() == '-') {
        ReadOffset(in, time);
        return;
    }
    const QByteArray zone = in.Word().toUpper();
    if (zone != "GMT" && zone != "UTC" && zone != "Z") {
        in.Fail();
    }
}

int ReadMonth(Scanner& in)
{
    const QByteArray names = QByteArrayLiteral("janfebmaraprmayjunjulaugsepoctnovdec");
    const QByteArray word = in.Word().toLower();
    const int position = word.size() == 3 ? names.indexOf(word) : -1;
    if (position < 0 || position % 3 != 0) {
        in.Fail();
        return 0;
    }
    return position / 3 + 1;
}

/// Of two digits, so that the year is at most 50 years ahead.
int FullYear(int year)
{
    const int now = QDate::currentDate().year();
    const int full = now - now % 100 + year;
    return full > now + 50 ? full - 100 : full;
}

/// Sun Nov  6 08:49:37 1994, after the day of the week
void ReadAsctime(Scanner& in, ParsedTime& time)
{
    time.month = ReadMonth(in);
    in.Blanks();
    time.day = in.Number(1, 2);
    in.Expect(' ');
    ReadTime(in, time);
    in.Expect(' ');
    time.year = in.Number(4, 4);
}

/// Sun, 06 Nov 1994 08:49:37 GMT and Sunday, 06-Nov-94 08:49:37 GMT, after the comma
void ReadDayFirst(Scanner& in, ParsedTime& time)
{
    in.Blanks();
    time.day = in.Number(1, 2);
    const char separator = in.Next() == '-' ? '-' : ' ';
    in.Expect(separator);
    time.month = ReadMonth(in);
    in.Expect(separator);
    const int century = in.Number(2, 2);
    time.year = Scanner::IsDigit(in.Next()) ? century * 100 + in.Number(2, 2) : FullYear(century);
    in.Expect(' ');
    ReadTime(in, time);
    ReadZone(in, time);
}

/// 1994-11-06T08:49:37.5+01:00
void ReadRfc3339(Scanner& in, ParsedTime& time)
{
    time.year = in.Number(4, 4);
    in.Expect('-');
    time.month = in.Number(2, 2);
    in.Expect('-');
    time.day = in.Number(2, 2);
    if (!in.Skip('t') && !in.Skip(' ')) {
        in.Expect('T');
    }
    ReadTime(in, time);
    if (in.Skip('.')) {
        for (const int weight : {100, 10, 1}) {
            time.milliseconds += weight * (Scanner::IsDigit(in.Next()) || weight == 100 ? in.Number(1, 1) : 0);
        }
        while (Scanner::IsDigit(in.Next())) {
            in.Number(1, 1);
        }
    }
    ReadZone(in, time);
}

} // namespace

QDateTime ParseHttpDate(const QByteArray& text)
{
    const QByteArray trimmed = text.trimmed();
    Scanner in(trimmed);
    ParsedTime time;
    if (Scanner::IsDigit(in.Next())) {
        ReadRfc3339(in, time);
    } else {
        in.Word();
        if (in.Skip(',')) {
            ReadDayFirst(in, time);
        } else {
            in.Expect(' ');
            ReadAsctime(in, time);
        }
    }
    const QDate date(time.year, time.month, time.day);
    if (in.HasFailed() || !in.IsAtEnd() || !date.isValid()) {
        return {};
    }
    const qint64 days = date.toJulianDay() - QDate(1970, 1, 1).toJulianDay();
    const qint64 seconds = days * 86'400 + time.seconds - time.offset;
    return seconds > 0 ? QDateTime::fromMSecsSinceEpoch(seconds * 1000 + time.milliseconds, Qt::UTC) : QDateTime();
}

} // namespace Norlis::Social
