// A form drawn for 1024 x 768 is scaled to the pendant's screen: here the settings name a
// screen larger than the offscreen desktop (800 x 600), so both ratios are 800 / 1024.
#include "src/plugins/templateplugin/abstract_widget.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include "src/plugins/templateplugin/common/common.h"

namespace {

// A form as a generated one is built: a laid-out part and a freely placed child.
class DrawnForm : public AbstractWidget {
public:
    DrawnForm() {
        setGeometry(0, 0, 640, 480);
        QFont form_font = font();
        form_font.setPointSize(20);
        setFont(form_font);
        auto* row = new QWidget(this);
        row->setGeometry(0, 0, 640, 100);
        layout_ = new QHBoxLayout(row);
        layout_->setContentsMargins(24, 20, 24, 20);
        layout_->setSpacing(10);
        button_ = new QPushButton(QStringLiteral("Confirm"), row);
        button_->setMinimumSize(100, 40);
        layout_->addWidget(button_);
        label_ = new QLabel(QStringLiteral("free"), this);
        label_->setGeometry(10, 200, 200, 100);
        QFont label_font = label_->font();
        label_font.setPixelSize(30);
        label_->setFont(label_font);
    }

    using AbstractWidget::autoResize;

    QHBoxLayout* layout_;
    QPushButton* button_;
    QLabel* label_;
};

}  // namespace

class AbstractWidgetTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QSettings settings(QStringLiteral("orlape"), QStringLiteral("orlape_system"));
        settings.setValue(QStringLiteral("Displays/Resolution"), QStringLiteral("1280*960"));
        settings.sync();
    }

    // Sizes, fonts, margins and spacing are scaled once from the designed values, however
    // often the form scales itself; a child that inherits its font follows the form's. Style
    // sheets scale their pixel sizes.
    void scalesFromTheDesignedValuesOnly() {
        DrawnForm form;
        for (int pass = 0; pass < 2; ++pass) {
            form.autoResize();
            QCOMPARE(form.size(), QSize(500, 375));
            QCOMPARE(form.font().pointSize(), 16);
            QCOMPARE(form.button_->minimumSize(), QSize(78, 31));
            QCOMPARE(form.button_->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
            QCOMPARE(form.label_->geometry(), QRect(8, 156, 156, 78));
            QCOMPARE(form.label_->font().pixelSize(), 23);
            QCOMPARE(form.layout_->contentsMargins(), QMargins(19, 16, 19, 16));
            QCOMPARE(form.layout_->spacing(), 8);
            QVERIFY(!form.button_->testAttribute(Qt::WA_SetFont));
            QCOMPARE(form.button_->font().pointSize(), 16);
        }
        form.label_->setStyleSheet(QStringLiteral("QLabel { padding: 32px; }"));
        Common::getCommonHandle()->setRatioStyleSheet(form.label_);
        QCOMPARE(form.label_->styleSheet(), QStringLiteral("QLabel { padding: 25px; }"));
    }
};

QTEST_MAIN(AbstractWidgetTest)
#include "abstract_widget_test.moc"
