// Screen-ratio scaling, the settings store, message boxes and the on-screen combo box, in a real
// QApplication on the offscreen platform (its screen is 800 x 600).
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>
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

Q_DECLARE_METATYPE(QRect)

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
    void screen_area_data();
    void screen_area();
    void ratios_come_from_the_pendant_settings();
    void style_sheets_scale_by_the_minimum_ratio();
    void message_boxes_show_over_the_pendant_form();
    void message_box_off_the_interface_thread_is_not_shown();
    void combo_popup_stays_inside_the_screen();
    void combo_translatable_items_follow_the_language();

private:
    QTemporaryDir settings_folder_;
};

void CommonHelpersTest::initTestCase() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_folder_.path());
    Settings settings;
    QCOMPARE(settings.organizationName(), QStringLiteral("orlape"));
    QCOMPARE(settings.applicationName(), QStringLiteral("orlape_system"));
    settings.setValue(QStringLiteral("Displays/Resolution"), QStringLiteral("800*600"));
}

void CommonHelpersTest::screen_area_data() {
    QTest::addColumn<QString>("resolution");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<QRect>("area");
    const QRect wide(0, 0, 1920, 1080);
    const QRect below_a_bar(0, 40, 1920, 1040);
    const QRect small(0, 0, 800, 600);
    QTest::newRow("below the design size") << "800*600" << wide << wide << QRect(0, 0, 1024, 768);
    QTest::newRow("missing") << "" << wide << wide << QRect(0, 0, 1024, 768);
    QTest::newRow("not numbers") << "wide*tall" << wide << wide << QRect(0, 0, 1024, 768);
    QTest::newRow("fits: origin of the available area")
        << "1280*800" << below_a_bar << wide << QRect(0, 40, 1280, 800);
    QTest::newRow("design size fits") << "1024*768" << wide << wide << QRect(0, 0, 1024, 768);
    QTest::newRow("too large: the whole screen")
        << "1280*800" << small << small << QRect(0, 0, 800, 600);
    QTest::newRow("one side too large")
        << "1280*2000" << below_a_bar << wide << QRect(0, 0, 1280, 1080);
}

void CommonHelpersTest::screen_area() {
    QFETCH(QString, resolution);
    QFETCH(QRect, available);
    QFETCH(QRect, screen);
    QFETCH(QRect, area);
    const ScreenArea got = ScreenArea::fromResolution(resolution, available, screen);
    QCOMPARE(QRect(got.left, got.top, got.width, got.height), area);
}

// At the design resolution nothing is scaled; the scaled case is the forms' own test.
void CommonHelpersTest::ratios_come_from_the_pendant_settings() {
    const Common* common = Common::getCommonHandle();
    QCOMPARE(common->getRatioSize(87, 63), QSize(87, 63));
    QCOMPARE(common->getFontSize(), 20);
    QCOMPARE(common->getRowHeight(), 30);
    QCOMPARE(QSize(common->getScreenWidth(), common->getScreenHeight()), QSize(1024, 768));
}

void CommonHelpersTest::style_sheets_scale_by_the_minimum_ratio() {
    QCOMPARE(Common::scaledStyleSheet(QStringLiteral("font: 16px; border: 1px"), 1.25),
             QStringLiteral("font: 20px; border: 1px"));
    QCOMPARE(Common::scaledStyleSheet(QStringLiteral("a: 10px; b: 3px 4px; c: 7pt"), 1.5),
             QStringLiteral("a: 15px; b: 5px 6px; c: 7pt"));
    QCOMPARE(Common::scaledStyleSheet(QStringLiteral("QLabel { min-height: 30px; }"), 0.5),
             QStringLiteral("QLabel { min-height: 15px; }"));
    QLineEdit edit;
    edit.setStyleSheet(QStringLiteral("QLineEdit { padding: 12px; }"));
    Common::getCommonHandle()->setRatioStyleSheet(&edit);
    QCOMPARE(edit.styleSheet(), QStringLiteral("QLineEdit { padding: 12px; }"));
    Common::getCommonHandle()->setRatioStyleSheet(nullptr);
}

void CommonHelpersTest::message_boxes_show_over_the_pendant_form() {
    QWidget pendant_form;
    pendant_form.show();
    MessageBox::s_messageBoxParent = &pendant_form;
    struct Case {
        QMessageBox::StandardButton (*show)(const QString&, QMessageBox::StandardButtons,
                                            QMessageBox::StandardButton,
                                            QMessageBox::StandardButton);
        const char* title;
        QMessageBox::Icon icon;
    };
    const Case cases[] = {
        {[](const QString& text, QMessageBox::StandardButtons buttons,
            QMessageBox::StandardButton default_button, QMessageBox::StandardButton escape) {
             return MessageBox::information(text, buttons, default_button, escape);
         },
         "Information", QMessageBox::Information},
        {&MessageBox::warning, "Warning", QMessageBox::Warning},
        {&MessageBox::critical, "Critical", QMessageBox::Critical},
        {&MessageBox::question, "Question", QMessageBox::Question},
    };
    for (const Case& each : cases) {
        MessageBoxAnswerer answer(QMessageBox::Cancel);
        QCOMPARE(
            each.show(QStringLiteral("Gripper 1 is not connected"),
                      QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, QMessageBox::Cancel),
            QMessageBox::Cancel);
        QCOMPARE(answer.boxes(),
                 QStringList(QString::fromLatin1(each.title) + ": Gripper 1 is not connected"));
        QCOMPARE(answer.parent, &pendant_form);
        QCOMPARE(answer.icon, each.icon);
    }
    MessageBoxAnswerer escape(QMessageBox::Escape);
    QCOMPARE(MessageBox::warning(QStringLiteral("Stop?"), QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::Yes, QMessageBox::No),
             QMessageBox::No);
    MessageBox::s_messageBoxParent = nullptr;
}

void CommonHelpersTest::message_box_off_the_interface_thread_is_not_shown() {
    LogCapture log;
    std::atomic<int> result(-1);
    std::thread script([&] { result = MessageBox::critical(QStringLiteral("from a script")); });
    script.join();
    QCOMPARE(result.load(), static_cast<int>(QMessageBox::NoButton));
    QVERIFY(log.contains("QThread::currentThread() != qApp->thread()"));
    QVERIFY(nullptr == QApplication::activeModalWidget());
}

void CommonHelpersTest::combo_popup_stays_inside_the_screen() {
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
    QCOMPARE(list->count(), 12);
    combo.hidePopup();
    QVERIFY(!list->isVisible());
    ComboBox empty;
    empty.showPopup();
    QVERIFY(!empty.popupList()->isVisible());
}

void CommonHelpersTest::combo_translatable_items_follow_the_language() {
    ComboBox combo;
    combo.addItem(QStringLiteral("Position"));
    combo.setTranslatable(true);
    combo.addItem(QStringLiteral("Force"));
    QCOMPARE(combo.itemText(0), QStringLiteral("Position"));
    CapitalTranslator capitals;
    QVERIFY(QCoreApplication::installTranslator(&capitals));
    QTRY_COMPARE(combo.itemText(0), QStringLiteral("POSITION"));
    QCOMPARE(combo.itemText(1), QStringLiteral("FORCE"));
    combo.insertItem(0, QStringLiteral("Speed"));
    QCOMPARE(combo.itemText(0), QStringLiteral("SPEED"));
    QCoreApplication::removeTranslator(&capitals);
    QTRY_COMPARE(combo.itemText(0), QStringLiteral("Speed"));
    combo.setTranslatable(false);
    combo.setItemText(1, QStringLiteral("grip"));
    QCOMPARE(combo.itemText(1), QStringLiteral("grip"));
}

QTEST_MAIN(CommonHelpersTest)
#include "common_helpers_test.moc"
