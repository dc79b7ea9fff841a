#include "PdfFiles.h"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace Norlis::TestKit {

namespace {

template <typename Paint>
QByteArray Written(const QSizeF& size, Paint paint)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageSize(QPageSize(size, QPageSize::Point, {}, QPageSize::ExactMatch));
        writer.setPageMargins({0, 0, 0, 0});
        writer.setResolution(72);
        QPainter painter(&writer);
        paint(writer, painter);
    }
    return buffer.data();
}

QByteArray PdfOfObjects(const QVector<QByteArray>& objects, const QByteArray& trailer = {})
{
    QByteArray text = "%PDF-1.4\n";
    QByteArray table = "0000000000 65535 f \n";
    for (int index = 0; index < objects.size(); ++index) {
        table += QByteArray::number(text.size()).rightJustified(10, '0') + " 00000 n \n";
        text += QByteArray::number(index + 1) + " 0 obj\n" + objects[index] + "\nendobj\n";
    }
    const QByteArray count = QByteArray::number(objects.size() + 1);
    const QByteArray start = QByteArray::number(text.size());
    return text + "xref\n0 " + count + '\n' + table + "trailer\n<< /Size " + count + " /Root 1 0 R " + trailer +
           " >>\nstartxref\n" + start + "\n%%EOF\n";
}

QByteArray StreamOf(const QByteArray& content)
{
    return "<< /Length " + QByteArray::number(content.size()) + " >>\nstream\n" + content + "\nendstream";
}

QVector<QByteArray> OnePage(const QByteArray& mediaBox, const QByteArray& content)
{
    return {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
            "<< /Type /Page /Parent 2 0 R /MediaBox [" + mediaBox + "] /Contents 4 0 R /Resources << >> >>",
            StreamOf(content)};
}

} // namespace

QByteArray PdfOfColor(const QColor& color, const QSizeF& size)
{
    return Written(size, [&](QPdfWriter& writer, QPainter& painter) {
        painter.fillRect(0, 0, writer.width(), writer.height(), color);
    });
}

QByteArray PdfOfColors(const QVector<QColor>& colors)
{
    return Written({595, 842}, [&](QPdfWriter& writer, QPainter& painter) {
        for (int page = 0; page < colors.size(); ++page) {
            if (page > 0) {
                writer.newPage();
            }
            painter.fillRect(0, 0, writer.width(), writer.height(), colors[page]);
        }
    });
}

QByteArray PdfOfText(const QString& text, int pages)
{
    return Written({595, 842}, [&](QPdfWriter& writer, QPainter& painter) {
        for (int page = 0; page < pages; ++page) {
            if (page > 0) {
                writer.newPage();
            }
            painter.drawText(QRect(50, 50, 495, 742), Qt::TextWordWrap, text);
        }
    });
}

QByteArray PdfOfContent(const QByteArray& mediaBox, const QByteArray& content)
{
    return PdfOfObjects(OnePage(mediaBox, content));
}

QByteArray PdfWithMuchElse(const QColor& color, int bytes)
{
    const QByteArray fill = QByteArray::number(color.redF()) + ' ' + QByteArray::number(color.greenF()) + ' ' +
                            QByteArray::number(color.blueF()) + " rg 0 0 100 100 re f";
    QVector<QByteArray> objects = OnePage("0 0 100 100", fill);
    constexpr int objectSize = 1024 * 1024;
    for (int written = 0; written < bytes; written += objectSize) {
        objects.append(StreamOf(QByteArray(objectSize, ' ')));
    }
    return PdfOfObjects(objects);
}

QByteArray PdfWithoutPages()
{
    return PdfOfObjects({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [] /Count 0 >>"});
}

QByteArray PdfWithPassword()
{
    auto objects = OnePage("0 0 595 842", "0 0 100 100 re f");
    const QByteArray key = '<' + QByteArray(64, 'A') + '>';
    objects << "<< /Filter /Standard /V 1 /R 2 /P -44 /O " + key + " /U " + key + " >>";
    return PdfOfObjects(objects, "/Encrypt 5 0 R /ID [<00112233445566778899aabbccddeeff> "
                                 "<00112233445566778899aabbccddeeff>]");
}

QByteArray PdfThatTakesLong()
{
    // One path of very many curves that cover the page again and again.
    QByteArray content = "0 0 m\n";
    for (int count = 0; count < 1'000'000; ++count) {
        const QByteArray number = QByteArray::number(count % 842);
        content += "595 " + number + " 0 " + number + " 595 842 c\n";
    }
    return PdfOfContent("0 0 595 842", content + "f*\n");
}

} // namespace Norlis::TestKit
