// SPDX-License-Identifier: MIT
// The window's own icons and the parts that explain an empty place.
#include "platform/symbol.h"

#include "platform/emptystate.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize size(32, 32);

constexpr Symbol symbols[] = {Symbol::keyboard, Symbol::profiles,   Symbol::macro,     Symbol::light, Symbol::tick,
                              Symbol::page,     Symbol::feed,       Symbol::club,      Symbol::help,  Symbol::add,
                              Symbol::remove,   Symbol::noKeyboard, Symbol::noService, Symbol::undo,  Symbol::history,
                              Symbol::zoomOut,  Symbol::fit};

QImage pictureOf(const QIcon &icon, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(size, 1, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The colour of the most opaque dot.
QColor inkOf(const QImage &picture)
{
    QColor ink(Qt::transparent);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y).alpha() > ink.alpha())
                ink = picture.pixelColor(x, y);
    return ink;
}

} // namespace

class SymbolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void everySymbolHasItsOwnDrawing()
    {
        QList<QImage> pictures;
        for (const Symbol symbol : symbols) {
            const QImage picture = pictureOf(Symbols::icon(symbol));
            QCOMPARE(inkOf(picture).alpha(), 255);
            QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
            QVERIFY(!pictures.contains(picture));
            pictures.append(picture);
        }
    }

    void drawingFollowsThePalette()
    {
        const QIcon icon = Symbols::icon(Symbol::add);
        QPalette palette;
        palette.setColor(QPalette::Active, QPalette::ButtonText, QColor(1, 2, 3));
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(70, 80, 90));
        QApplication::setPalette(palette);
        QCOMPARE(inkOf(pictureOf(icon)), QColor(1, 2, 3));
        QCOMPARE(inkOf(pictureOf(icon, QIcon::Disabled)), QColor(70, 80, 90));
        palette.setColor(QPalette::Active, QPalette::ButtonText, QColor(200, 210, 220));
        QApplication::setPalette(palette);
        QCOMPARE(inkOf(pictureOf(icon)), QColor(200, 210, 220));
    }

    void theDesktopsIconComesFirst()
    {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkpath(u"own/32x32/actions"_s));
        QFile index(folder.filePath(u"own/index.theme"_s));
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=own\nDirectories=32x32/actions\n[32x32/actions]\nSize=32\nType=Fixed\n");
        index.close();
        QPixmap red(size);
        red.fill(Qt::red);
        QVERIFY(red.save(folder.filePath(u"own/32x32/actions/list-add.png"_s)));
        const QStringList paths = QIcon::themeSearchPaths();
        const QString name = QIcon::themeName();
        QIcon::setThemeSearchPaths({folder.path()});
        QIcon::setThemeName(u"own"_s);
        const QColor themed = inkOf(pictureOf(Symbols::icon(Symbol::add, u"list-add"_s)));
        const QImage missing = pictureOf(Symbols::icon(Symbol::remove, u"edit-delete"_s));
        QIcon::setThemeSearchPaths(paths);
        QIcon::setThemeName(name);
        QCOMPARE(themed, QColor(Qt::red));
        QCOMPARE(missing, pictureOf(Symbols::icon(Symbol::remove)));
    }

    void emptyStateOffersTheNextStep()
    {
        EmptyState state(Symbol::macro);
        state.label()->setText(u"Nothing here yet."_s);
        QPushButton *button = state.addButton(u"Make one"_s);
        state.resize(300, 300);
        state.show();
        QVERIFY(QTest::qWaitForWindowExposed(&state));
        QVERIFY(state.label()->isVisible());
        QVERIFY(button->geometry().top() > state.label()->geometry().bottom());
        // The parts are in the middle.
        const int above = state.childrenRect().top(), below = state.height() - state.childrenRect().bottom();
        QVERIFY2(qAbs(above - below) <= 3, qPrintable(u"%1 %2"_s.arg(above).arg(below)));
    }
};

QTEST_MAIN(SymbolTest)
#include "symboltest.moc"
