#pragma once

#include <QString>
#include <QTextStream>
#include <vector>

// Writes indented JSON straight to a stream, keeping keys in the order they are written
// (QJsonObject would sort them). Numbers that JSON can't hold (NaN, infinities) become null.
class JsonWriter {
public:
    explicit JsonWriter(QTextStream& out) : m_out(out) {}

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }

    // The key of the next value inside an object.
    JsonWriter& Key(const QString& key);

    void Value(const QString& text);
    void Value(const char* text) { Value(QString::fromUtf8(text)); }
    void Value(double number);
    void Value(int number);
    // Exact for every 64-bit value, which a double isn't.
    void Value(quint64 number);
    void Value(bool flag);
    void Null();

    // Shortcuts for a member of an object.
    template <typename T>
    void Member(const QString& key, const T& value) { Key(key).Value(value); }

    static QString Quoted(const QString& text);
    static QString Number(double number);

private:
    void Open(char bracket);
    void Close(char bracket);
    void BeforeValue();
    void Indent();

    struct Level {
        bool isObject = false;
        int count = 0;
    };
    QTextStream& m_out;
    std::vector<Level> m_levels;
    bool m_afterKey = false;
};
