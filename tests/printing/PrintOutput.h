#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QString>

// What a printed PDF holds, read with poppler's tools: its pages, the first page's size in
// points, and a page rendered at a resolution.
struct PrintOutput {
    static int PageCount(const QByteArray& pdf);
    static QSizeF PageSizePoints(const QByteArray& pdf);
    static QImage Render(const QByteArray& pdf, int dpi, int page = 1);
    // The first column of the row that is reddish (red above 200, green and blue below 80);
    // -1 when there is none.
    static int FirstRedColumn(const QImage& image, int row);
};
