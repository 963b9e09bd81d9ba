// Screen-ratio scaling, the settings store, message boxes and the on-screen combo box, in a real
// QApplication on the offscreen platform (its screen is 800 x 600).
#include <QApplication>
#include <QListWidget>
#include <QMessageBox>
#include <QtTest>

#include <atomic>
#include <thread>

#include "src/plugins/templateplugin/common/combobox.h"
#include "src/plugins/templateplugin/common/common.h"
#include "src/plugins/templateplugin/common/messagebox.h"
#include "src/plugins/templateplugin/common/screen_area.h"
#include "src/plugins/templateplugin/common/settings.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/message_box_answerer.h"

namespace {

// Translates every text of the context "ComboBox" into capitals.
class CapitalTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override {
        return QLatin1String("ComboBox") == context ? QString::fromUtf8(source).toUpper()
                                                    : QString();
    }
};

}  // namespace

class CommonHelpersTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void screen_area_and_ratios();
    void message_boxes_show_over_the_pendant_form_from_its_thread_only();
    void combo_popup_stays_inside_the_screen_and_items_follow_the_language();

private:
    QTemporaryDir settings_folder_;
};

void CommonHelpersTest::initTestCase() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_folder_.path());
    Settings().setValue(QStringLiteral("Displays/Resolution"), QStringLiteral("800*600"));
}

// The area from the pendant's resolution setting; at the design resolution nothing is scaled
// (the scaled case is the forms' own test), style sheets scale their pixel sizes only.
void CommonHelpersTest::screen_area_and_ratios() {
    const QRect wide(0, 0, 1920, 1080), below_a_bar(0, 40, 1920, 1040), small(0, 0, 800, 600);
    const struct {
        const char* resolution;
        QRect available, screen, area;
    } rows[] = {
        {"800*600", wide, wide, QRect(0, 0, 1024, 768)},            // below the design size
        {"", wide, wide, QRect(0, 0, 1024, 768)},                   // missing
        {"wide*tall", wide, wide, QRect(0, 0, 1024, 768)},          // not numbers
        {"1280*800", below_a_bar, wide, QRect(0, 40, 1280, 800)},   // fits: the available origin
        {"1024*768", wide, wide, QRect(0, 0, 1024, 768)},           // the design size fits
        {"1280*800", small, small, QRect(0, 0, 800, 600)},          // too large: the whole screen
        {"1280*2000", below_a_bar, wide, QRect(0, 0, 1280, 1080)},  // one side too large
    };
    for (const auto& row : rows) {
        const ScreenArea got =
            ScreenArea::fromResolution(row.resolution, row.available, row.screen);
        QCOMPARE(QRect(got.left, got.top, got.width, got.height), row.area);
    }
    QCOMPARE(Common::getCommonHandle()->getRatioSize(87, 63), QSize(87, 63));
    QCOMPARE(Common::getCommonHandle()->getRowHeight(), 30);
    QCOMPARE(Common::scaledStyleSheet(QStringLiteral("a: 10px; b: 3px 4px; c: 7pt"), 1.5),
             QStringLiteral("a: 15px; b: 5px 6px; c: 7pt"));
}

// The boxes the plug-in shows: title, text, icon, buttons, over the form the pendant gave; none
// off the interface thread.
void CommonHelpersTest::message_boxes_show_over_the_pendant_form_from_its_thread_only() {
    QWidget pendant_form;
    pendant_form.show();
    MessageBox::s_messageBoxParent = &pendant_form;
    MessageBoxAnswerer answer(QMessageBox::Cancel);
    QCOMPARE(MessageBox::information(QStringLiteral("Gripper 1 is not connected"),
                                     QMessageBox::Ok | QMessageBox::Cancel),
             QMessageBox::Cancel);
    QCOMPARE(answer.icon, QMessageBox::Information);
    QCOMPARE(MessageBox::warning(QStringLiteral("Stop?")), QMessageBox::Ok);
    QCOMPARE(answer.icon, QMessageBox::Warning);
    QCOMPARE(answer.parent, &pendant_form);
    QCOMPARE(answer.boxes(),
             QStringList({"Information: Gripper 1 is not connected", "Warning: Stop?"}));
    MessageBox::s_messageBoxParent = nullptr;
    LogCapture log;
    std::atomic<int> result(-1);
    std::thread script([&] { result = MessageBox::warning(QStringLiteral("from a script")); });
    script.join();
    QCOMPARE(result.load(), static_cast<int>(QMessageBox::NoButton));
    QVERIFY(log.contains("QThread::currentThread() != qApp->thread()"));
    QVERIFY(nullptr == QApplication::activeModalWidget());
}

void CommonHelpersTest::combo_popup_stays_inside_the_screen_and_items_follow_the_language() {
    QWidget window;
    ComboBox combo(&window);
    for (int item = 1; item <= 12; ++item) {
        combo.addItem(QString::number(item));
    }
    combo.setGeometry(0, 0, 160, 40);
    window.setGeometry(900, 700, 200, 60);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    combo.showPopup();
    QListWidget* list = combo.popupList();
    QTRY_VERIFY(list->isVisible());
    const QRect area(0, 0, 1024, 768);
    QVERIFY2(area.contains(list->geometry()), "the popup leaves the usable screen area");
    QCOMPARE(list->geometry().bottom() + 1, combo.mapToGlobal(QPoint(0, 0)).y());
    QCOMPARE(list->height(),
             ComboBox::MAX_VISIBLE_ROWS * Common::getCommonHandle()->getRowHeight() +
                 2 * list->frameWidth());
    combo.hidePopup();
    QVERIFY(!list->isVisible());
    // An empty one shows no popup; translatable items follow the language.
    ComboBox words;
    words.showPopup();
    QVERIFY(!words.popupList()->isVisible());
    words.addItem(QStringLiteral("Position"));
    words.setTranslatable(true);
    words.addItem(QStringLiteral("Force"));
    CapitalTranslator capitals;
    QVERIFY(QCoreApplication::installTranslator(&capitals));
    QTRY_COMPARE(words.itemText(0), QStringLiteral("POSITION"));
    QCOMPARE(words.itemText(1), QStringLiteral("FORCE"));
    words.insertItem(0, QStringLiteral("Speed"));
    QCOMPARE(words.itemText(0), QStringLiteral("SPEED"));
    QCoreApplication::removeTranslator(&capitals);
    QTRY_COMPARE(words.itemText(0), QStringLiteral("Speed"));
}

QTEST_MAIN(CommonHelpersTest)
#include "common_helpers_test.moc"
