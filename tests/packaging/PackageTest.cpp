#include "TestSupport.h"
#include "printing/PrivateCups.h"
#include "tools/CliRun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QMimeDatabase>
#include <QProcess>
#include <QRegularExpression>

namespace {

const QString AppId = QStringLiteral("example.palvex_systems.Tessarelle");
const QString MimeType = QStringLiteral("application/x-tessarelle-project");
const QString MimeIcon = QStringLiteral("application-x-tessarelle-project");

struct ToolRun {
    int exitCode = -1;
    QString output; // standard output and error together
};

// Runs a program to its end (at most two minutes) without a display, with the given variables
// added.
ToolRun run(const QString& program, const QStringList& arguments, const QProcessEnvironment& extra = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    environment.insert(extra);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    ToolRun result;
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        result.output = program + ": " + process.errorString();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.output = QString::fromLocal8Bit(process.readAll());
    return result;
}

// The value of a key in a desktop entry ("Exec", "MimeType", ...).
QString entry(const QString& file, const QString& key)
{
    const QRegularExpression line(QStringLiteral("^%1=(.*)$").arg(key), QRegularExpression::MultilineOption);
    return line.match(QString::fromUtf8(readFile(file))).captured(1);
}

QString version()
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(TESSARELLE_VERSION_MAJOR)
        .arg(TESSARELLE_VERSION_MINOR)
        .arg(TESSARELLE_VERSION_PATCH)
        .arg(TESSARELLE_VERSION_TWEAK);
}

// The desktop's files of an installed tree under its prefix: present, valid by the Debian tools,
// and naming each other, the programs and the icons consistently.
void checkDesktopFiles(const QString& prefix)
{
    const QString share = prefix + "/share/";
    const QString desktop = share + "applications/" + AppId + ".desktop";
    const QString metainfo = share + "metainfo/" + AppId + ".metainfo.xml";
    const QString thumbnailer = share + "thumbnailers/" + AppId + ".thumbnailer";
    for (const QString& file : {desktop, metainfo, thumbnailer, share + "mime/packages/" + AppId + ".xml",
                                share + "tessarelle/Templates/Default.tmp", prefix + "/bin/tessarelle",
                                prefix + "/bin/tessarelle-cli"})
        EXPECT_TRUE(QFileInfo(file).isFile()) << file.toStdString();

    ToolRun check = run("desktop-file-validate", {desktop});
    EXPECT_TRUE(check.exitCode == 0 && check.output.isEmpty()) << check.output.toStdString();
    check = run("appstreamcli", {"validate", "--no-net", metainfo});
    EXPECT_EQ(check.exitCode, 0) << check.output.toStdString();
    EXPECT_TRUE(readFile(metainfo).contains(QStringLiteral("<release version=\"%1\"").arg(version()).toUtf8()))
        << "the newest release is the program's version";

    EXPECT_EQ(entry(desktop, "MimeType"), MimeType + ';');
    EXPECT_EQ(entry(thumbnailer, "MimeType"), MimeType + ';');
    EXPECT_EQ(entry(desktop, "Icon"), AppId);
    for (const QString& command : {entry(desktop, "Exec"), entry(thumbnailer, "Exec")})
        EXPECT_TRUE(QFileInfo(prefix + "/bin/" + command.section(' ', 0, 0)).isExecutable()) << command.toStdString();
    for (const auto& [context, name] : {std::pair{"apps", AppId}, std::pair{"mimetypes", MimeIcon}}) {
        const QString icons = share + "icons/hicolor/";
        EXPECT_TRUE(QFileInfo(icons + "scalable/" + context + '/' + name + ".svg").isFile()) << name.toStdString();
        for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
            const QImage icon(QStringLiteral("%1%2x%2/%3/%4.png").arg(icons).arg(size).arg(context, name));
            EXPECT_EQ(icon.size(), QSize(size, size)) << name.toStdString() << ' ' << size;
        }
    }
}

} // namespace

TEST(Package, InstallLaysOutTheProgramForTheDesktop)
{
    TestFolder prefix;
    ToolRun install = run("cmake", {"--install", TESSARELLE_BUILD_DIR, "--prefix", prefix.path()});
    ASSERT_EQ(install.exitCode, 0) << install.output.toStdString();
    checkDesktopFiles(prefix.path());
    // Every file of the program's data folder goes with it.
    for (QDirIterator data(TESSARELLE_DATA_DIR, QDir::Files, QDirIterator::Subdirectories); data.hasNext();) {
        const QString file = QDir(TESSARELLE_DATA_DIR).relativeFilePath(data.next());
        EXPECT_TRUE(QFile::exists(prefix.path() + "/share/tessarelle/" + file)) << file.toStdString();
    }

    // The desktop knows a project by its name, and a renamed one by its first bytes.
    const ToolRun mime = run("update-mime-database", {prefix.path() + "/share/mime"});
    ASSERT_EQ(mime.exitCode, 0) << mime.output.toStdString();
    qputenv("XDG_DATA_DIRS", (prefix.path() + "/share").toLocal8Bit());
    TestFolder folder;
    const QMimeDatabase types;
    const auto type = [&](const QString& name, const QByteArray& content, QMimeDatabase::MatchMode mode) {
        return types.mimeTypeForFile(folder.write(name, content), mode).name().toStdString();
    };
    EXPECT_EQ(type("label.dst", {}, QMimeDatabase::MatchExtension), MimeType.toStdString());
    EXPECT_EQ(types.mimeTypeForFile(folder.path() + "/label.dst").comment(), "Tessarelle project");
    // The current format (UTF-16 name) and the oldest (8-bit name).
    for (const QString& project : {QString(TESSARELLE_EXAMPLES_DIR "/sample.dst"),
                                   QString(TESSARELLE_FUZZ_CORPUS_DIR "/project/older-1.5.dst")})
        EXPECT_EQ(type("label.bin", readFile(project), QMimeDatabase::MatchContent), MimeType.toStdString());
    EXPECT_NE(type("text.bin", "Tessarelle_1.7", QMimeDatabase::MatchContent), MimeType.toStdString());
}

// The package as a user installs it: built by CPack, its files and dependencies as dpkg shows
// them, and the programs run from where it unpacks, the thumbnailer inside a file manager's
// sandbox where bubblewrap can make one, the designer printing unattended on a queue of the
// test's own scheduler.
TEST(Package, DebianPackageHoldsTheProgramAndItsDependencies)
{
    TestFolder work;
    const ToolRun cpack = run("cpack", {"-G", "DEB", "--config", TESSARELLE_BUILD_DIR "/CPackConfig.cmake", "-B", work.path()});
    ASSERT_EQ(cpack.exitCode, 0) << cpack.output.toStdString();
    const QString architecture = run("dpkg", {"--print-architecture"}).output.trimmed();
    const QString deb = work.path() + QStringLiteral("/tessarelle_%1_%2.deb").arg(version(), architecture);
    ASSERT_TRUE(QFile::exists(deb)) << cpack.output.toStdString();

    const QString depends = run("dpkg-deb", {"-f", deb, "Depends"}).output;
    for (const char* package : {"libqt6gui6", "libqt6widgets6", "libcups2", "libwmf",
                                "qt6-image-formats-plugins", "fonts-liberation", "fonts-urw-base35", "cups-client"})
        EXPECT_TRUE(depends.contains(QLatin1String(package))) << package << " in " << depends.toStdString();

    const QString root = work.path() + "/root";
    const ToolRun unpack = run("dpkg-deb", {"-x", deb, root});
    ASSERT_EQ(unpack.exitCode, 0) << unpack.output.toStdString();
    checkDesktopFiles(root + "/usr");

    // Thumbnails of the examples from the unpacked program, in the sandbox a file manager makes:
    // only the system's /usr, the program, the project and the output folder, no network.
    const QString out = work.path() + "/thumbnails";
    QDir().mkpath(out);
    const bool sandbox = run("bwrap", {"--ro-bind", "/", "/", "true"}).exitCode == 0;
    if (!sandbox)
        std::printf("bubblewrap can't make a sandbox here: the thumbnailer runs without one\n");
    for (const QString& name : QDir(TESSARELLE_EXAMPLES_DIR).entryList({"*.dst"}, QDir::Files)) {
        const QString project = QDir(TESSARELLE_EXAMPLES_DIR).filePath(name);
        const QString png = name + ".png";
        QStringList command{"tessarelle-cli", "thumbnail", "-s", "256"};
        ToolRun thumbnail;
        if (sandbox) {
            thumbnail = run("bwrap", QStringList{"--ro-bind", "/usr", "/usr", "--symlink", "usr/lib", "/lib",
                                                 "--symlink", "usr/lib64", "/lib64", "--symlink", "usr/bin", "/bin",
                                                 "--ro-bind", "/etc/ld.so.cache", "/etc/ld.so.cache",
                                                 "--ro-bind-try", "/etc/fonts", "/etc/fonts",
                                                 "--ro-bind-try", "/var/cache/fontconfig", "/var/cache/fontconfig",
                                                 "--ro-bind", root + "/usr", "/opt/tessarelle", "--proc", "/proc",
                                                 "--dev", "/dev", "--tmpfs", "/tmp", "--ro-bind", project,
                                                 "/tmp/input.dst", "--bind", out, "/tmp/out", "--unshare-all",
                                                 "--die-with-parent", "--clearenv", "--chdir", "/",
                                                 "/opt/tessarelle/bin/" + command.takeFirst()}
                                         + command + QStringList{"/tmp/input.dst", "/tmp/out/" + png});
        } else {
            thumbnail = run(root + "/usr/bin/" + command.takeFirst(), command + QStringList{project, out + '/' + png});
        }
        EXPECT_EQ(thumbnail.exitCode, 0) << name.toStdString() << ": " << thumbnail.output.toStdString();
        EXPECT_EQ(QImage(out + '/' + png).size(), QSize(256, 256)) << name.toStdString();
    }

    // An unattended print of a project by the unpacked designer.
    PrivateCups& cups = PrivateCups::Instance();
    ASSERT_TRUE(cups.Running()) << cups.Failure().toStdString();
    cups.RawPrinter().Clear();
    TestFolder home;
    QProcessEnvironment env;
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        env.insert(name, home.path() + '/' + name);
    env.insert("HOME", home.path());
    QDir().mkpath(env.value("XDG_RUNTIME_DIR"));
    QFile::setPermissions(env.value("XDG_RUNTIME_DIR"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString project = home.path() + "/disc.dst";
    ASSERT_TRUE(QFile::copy(QDir(TESSARELLE_EXAMPLES_DIR).filePath("three-labels.dst"), project));
    const ToolRun print = run(root + "/usr/bin/tessarelle", {"-PRINTER", "Raw", "-PRINT", project}, env);
    EXPECT_GT(print.exitCode, 0) << print.output.toStdString();
    ASSERT_TRUE(cups.RawPrinter().WaitForJobs(1, 30000)) << print.output.toStdString() << cups.ErrorLog().toStdString();
    EXPECT_TRUE(cups.RawPrinter().Jobs().first().startsWith("%PDF"));
}
