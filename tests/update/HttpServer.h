#pragma once

#include <QHostAddress>
#include <QMap>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

// A web server of the test's own on the loopback address. Each path answers as the test has
// told it, and the test can hold an answer part of the way and let it go on later. It runs on
// the test's thread: while a test waits for the update worker, it serves.
class HttpServer : public QObject {
    Q_OBJECT

public:
    struct Answer {
        // Status line and headers without the blank line that ends them; empty for a server
        // that accepts the request and then says nothing.
        QByteArray head;
        QByteArray body;
        // How much of the body goes at once; the rest waits for Release. -1 for all of it.
        qint64 sendFirst = -1;
        // After what was sent, the connection breaks off instead of ending in order.
        bool drop = false;
    };

    HttpServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, &HttpServer::Accept);
    }

    QString Host() const { return QStringLiteral("127.0.0.1:%1").arg(m_server.serverPort()); }
    QString Url(const QString& path) const { return QStringLiteral("http://%1/%2").arg(Host(), path); }
    void Set(const QString& path, const Answer& answer) { m_answers[path] = answer; }
    static Answer Ok(const QByteArray& body, qint64 length = -1)
    {
        return {"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(length < 0 ? body.size() : length), body};
    }
    // Sends the rest of a held answer and ends it.
    void Release(const QString& path)
    {
        if (QPointer<QTcpSocket> socket = m_held.take(path)) {
            const Answer& answer = m_answers[path];
            socket->write(answer.body.mid(answer.sendFirst));
            socket->disconnectFromHost();
        }
    }
    QStringList requests;

signals:
    void Requested(const QString& path);

private:
    void Accept()
    {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { Serve(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    }
    void Serve(QTcpSocket* socket)
    {
        QByteArray& request = m_requests[socket];
        request += socket->readAll();
        if (!request.contains("\r\n\r\n"))
            return;
        // "GET /path HTTP/1.1"
        const QString path = QString::fromLatin1(request.split(' ').value(1)).mid(1);
        m_requests.remove(socket);
        requests << path;
        const Answer answer = m_answers.value(path, {"HTTP/1.1 404 Not Found\r\nContent-Length: 0", {}});
        if (!answer.head.isEmpty()) {
            socket->write(answer.head + "\r\nConnection: close\r\n\r\n");
            socket->write(answer.sendFirst < 0 ? answer.body : answer.body.left(answer.sendFirst));
            if (answer.drop) {
                socket->flush();
                socket->abort();
            } else if (answer.sendFirst < 0) {
                socket->disconnectFromHost();
            } else {
                m_held[path] = socket;
            }
        }
        emit Requested(path);
    }

    QTcpServer m_server;
    QMap<QString, Answer> m_answers;
    QMap<QTcpSocket*, QByteArray> m_requests;
    // A held answer's connection, gone when the client has left.
    QMap<QString, QPointer<QTcpSocket>> m_held;
};
