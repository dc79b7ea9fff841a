#include "Secrets.h"

#include <QUrl>

#include <algorithm>

namespace Norlis::Social {

namespace {

// Shorter ones would replace parts of ordinary words, and are no secrets anyway.
constexpr int minFormLength = 4;

} // namespace

void Secrets::Add(const QString& user, const QString& token)
{
    if (token.isEmpty()) {
        return;
    }
    const QByteArray bytes = token.toUtf8();
    const QByteArray credentials = user.toUtf8() + ':' + bytes;
    for (const QByteArray& secret : {bytes, credentials}) {
        for (const QByteArray& form : {secret, secret.toBase64(), secret.toBase64(QByteArray::OmitTrailingEquals),
                                       secret.toBase64(QByteArray::Base64UrlEncoding),
                                       QUrl::toPercentEncoding(QString::fromUtf8(secret)), secret.toHex()}) {
            const QString text = QString::fromUtf8(form);
            if (text.size() >= minFormLength && !forms.contains(text)) {
                forms.append(text);
            }
        }
    }
    std::sort(forms.begin(), forms.end(),
              [](const auto& left, const auto& right) { return left.size() > right.size(); });
}

QString Secrets::Redact(QString text) const
{
    for (const QString& form : forms) {
        text.replace(form, QStringLiteral("***"), Qt::CaseInsensitive);
    }
    return text;
}

} // namespace Norlis::Social
