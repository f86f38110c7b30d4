#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QString>
#include <QTemporaryDir>

// A folder that lives as long as the test and removes itself afterwards.
class TestFolder {
public:
    TestFolder();
    QString path() const { return m_dir.path(); }
    // Writes bytes to a file inside the folder and returns its full path.
    QString write(const QString& name, const QByteArray& bytes) const;

private:
    QTemporaryDir m_dir;
};

// Number of pixels in the image whose colour is within tolerance of the given one.
int countPixels(const QImage& image, QColor color, int tolerance = 0);
