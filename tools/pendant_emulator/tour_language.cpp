// The tour's stage in Simplified Chinese: the catalogue from the plug-in's resources is
// installed while the page is shown, as a pendant switching its language does, and removed
// again afterwards.
#include <QAbstractButton>
#include <QLabel>
#include <QTabWidget>

#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/language_catalogue.h"
#include "tools/pendant_emulator/tour.h"

namespace {

const int LANGUAGE_TIMEOUT_MS = 5000;

// The texts of the shown labels and buttons that are narrower than their text: clipped.
QStringList clipped_texts(QWidget* root) {
    QStringList clipped;
    for (QWidget* widget : root->findChildren<QWidget*>()) {
        auto* label = qobject_cast<QLabel*>(widget);
        auto* button = qobject_cast<QAbstractButton*>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        if (!text.isEmpty() && widget->isVisible() &&
            widget->width() < widget->minimumSizeHint().width()) {
            clipped.append(text.trimmed());
        }
    }
    return clipped;
}

}  // namespace

bool Tour::stage_language() {
    if (!checks_.show_page_tab("Setting")) {
        return false;
    }
    QWidget* page = checks_.page();
    auto* tabs = page->findChild<QTabWidget*>("tab_widget_");
    const auto setting_reads = [&](const QString& tab, const QStringList& states) {
        return tabs->tabText(1) == tab && states.contains(checks_.page_status("Setting"));
    };
    const auto in_chinese = [&] { return setting_reads("设置", {"已激活", "已到位"}); };
    const auto in_english = [&] { return setting_reads("Setting", {"Activated", "Arrived"}); };
    {
        LanguageCatalogue catalogue;
        QString error;
        if (!catalogue.install("zh_CN", error)) {
            return checks_.fail(error);
        }
        window_.transcript().note("language: " + catalogue.file());
        if (!checks_.wait(in_chinese, LANGUAGE_TIMEOUT_MS,
                          "the Setting tab in Simplified Chinese")) {
            return false;
        }
        if (!wait_for_events([&] { return clipped_texts(page).isEmpty(); }, LANGUAGE_TIMEOUT_MS)) {
            return checks_.fail("clipped texts in Simplified Chinese: " +
                                clipped_texts(page).join(", "));
        }
        if (!checks_.picture("03-activated-zh_CN", &window_)) {
            return false;
        }
    }
    return checks_.wait(in_english, LANGUAGE_TIMEOUT_MS, "the Setting tab in English again");
}
