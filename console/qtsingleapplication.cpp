#include "console/qtsingleapplication.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maxMessageBytes = 64 * 1024;
constexpr int receiveTimeout = 5000;
constexpr unsigned long connectRetryDelay = 20;
const QByteArray acknowledgement = QByteArrayLiteral("ack");

/// One name for each installed executable; short, for the system limits the length of the path.
QString instanceName()
{
    const QByteArray path = QCoreApplication::applicationFilePath().toUtf8();
    const QByteArray hash = QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex();
    return u"zandrel-"_s + QString::fromLatin1(hash.first(16));
}

int remaining(const QDeadlineTimer& deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

bool waitForBytes(QLocalSocket& socket, qint64 count, const QDeadlineTimer& deadline)
{
    while (socket.bytesAvailable() < count) {
        if (!socket.waitForReadyRead(remaining(deadline))) {
            return false;
        }
    }
    return true;
}

} // namespace

QtSingleApplication::QtSingleApplication(int& argc, char** argv)
    : QApplication(argc, argv)
{
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    m_socketPath = QDir(directory).filePath(instanceName());
    m_lock = std::make_unique<QLockFile>(m_socketPath + u".lock"_s);
    // A lock never grows old; it is stale only when the process that made it is gone.
    m_lock->setStaleLockTime(0);

    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &QtSingleApplication::acceptConnections);
    becomeRunningInstance();
}

bool QtSingleApplication::becomeRunningInstance()
{
    if (m_lock->isLocked()) {
        return true;
    }
    if (!m_lock->tryLock()) {
        return false;
    }
    QLocalServer::removeServer(m_socketPath);
    m_server.listen(m_socketPath);
    return true;
}

bool QtSingleApplication::isRunning()
{
    // A lock file that can't be made at all tells nothing of another instance.
    return !becomeRunningInstance() && m_lock->error() == QLockFile::LockFailedError;
}

bool QtSingleApplication::sendMessage(const QString& message, int timeout)
{
    const QByteArray bytes = message.toUtf8();
    if (bytes.size() > maxMessageBytes) {
        return false;
    }
    const QDeadlineTimer deadline(timeout);
    QLocalSocket socket;
    // The other instance may hold the lock already and not listen yet, or it may just be ending.
    do {
        if (!isRunning()) {
            return false;
        }
        socket.connectToServer(m_socketPath);
        if (socket.waitForConnected(remaining(deadline))) {
            break;
        }
        QThread::msleep(connectRetryDelay);
    } while (!deadline.hasExpired());

    QDataStream stream(&socket);
    stream << bytes;
    return socket.waitForBytesWritten(remaining(deadline)) &&
           waitForBytes(socket, acknowledgement.size(), deadline) &&
           socket.readAll() == acknowledgement;
}

void QtSingleApplication::setActivationWindow(QWidget* window, bool activateOnMessage)
{
    m_window = window;
    disconnect(this, &QtSingleApplication::messageReceived, this,
               &QtSingleApplication::activateWindow);
    if (activateOnMessage) {
        connect(this, &QtSingleApplication::messageReceived, this,
                &QtSingleApplication::activateWindow);
    }
}

void QtSingleApplication::activateWindow()
{
    if (m_window) {
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
        m_window->show();
        m_window->raise();
        m_window->activateWindow();
    }
}

void QtSingleApplication::acceptConnections()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { receive(socket); });
        // A peer that never finishes its message is dropped.
        auto* patience = new QTimer(socket);
        connect(patience, &QTimer::timeout, socket, &QLocalSocket::abort);
        patience->start(receiveTimeout);
    }
}

void QtSingleApplication::receive(QLocalSocket* socket)
{
    if (socket->bytesAvailable() > maxMessageBytes + qsizetype{sizeof(quint32)}) {
        socket->abort();
        return;
    }
    QDataStream stream(socket);
    QByteArray bytes;
    stream.startTransaction();
    stream >> bytes;
    if (!stream.commitTransaction()) {
        return;
    }
    socket->write(acknowledgement);
    socket->flush();
    Q_EMIT messageReceived(QString::fromUtf8(bytes));
}
