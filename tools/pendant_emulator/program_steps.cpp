#include "tools/pendant_emulator/program_steps.h"

#include "platform/abscondinfo.h"
#include "platform/pluginmanager.h"
#include "tools/pendant_emulator/condition_interface.h"
#include "tools/pendant_emulator/program_file.h"

namespace {

// The plug-in that executes steps of this type, or null with error set.
QObject* plugin_for(const QString& type, QString& error) {
    QObject* plugin = ExtensionSystem::PluginManager::getObjectByName(type);
    if (plugin == nullptr) {
        error = QString("no plug-in named \"%1\" is loaded").arg(type);
    }
    return plugin;
}

}  // namespace

ProgramSteps::ProgramSteps() = default;

ProgramSteps::~ProgramSteps() = default;

void ProgramSteps::insert(int row, AbsCondInfo* record) {
    name(record);
    const auto position = row < 0 || row > count() ? steps_.end() : steps_.begin() + row;
    steps_.emplace(position, record);
}

void ProgramSteps::replace(int row, AbsCondInfo* record) {
    if (record->getAlias().isEmpty()) {
        record->setAlias(at(row)->getAlias());
    }
    steps_[static_cast<std::size_t>(row)].reset(record);
}

void ProgramSteps::remove(int row) {
    steps_.erase(steps_.begin() + row);
}

void ProgramSteps::clear() {
    steps_.clear();
}

bool ProgramSteps::copy(int row, QString& error) {
    QObject* plugin = plugin_for(at(row)->getCondType(), error);
    if (plugin == nullptr) {
        return false;
    }
    ConditionInterface condition(plugin);
    AbsCondInfo* copied = condition.copy_abs_cond(at(row));
    if (copied == nullptr) {
        error =
            condition.last_error().isEmpty() ? "the plug-in made no copy" : condition.last_error();
        return false;
    }
    copied->setAlias(QString());
    insert(row + 1, copied);
    return true;
}

QString ProgramSteps::script_text(int row, QString& error) const {
    QObject* plugin = plugin_for(at(row)->getCondType(), error);
    if (plugin == nullptr) {
        return QString();
    }
    ConditionInterface condition(plugin);
    const QString text = condition.cond_info_to_script_info(at(row));
    if (text.isEmpty()) {
        error = condition.last_error().isEmpty() ? "the plug-in gave no script line"
                                                 : condition.last_error();
    }
    return text;
}

bool ProgramSteps::compile(QVector<ScriptLine>& lines, QString& error) const {
    QVector<ScriptLine> compiled;
    for (int row = 0; row < count(); ++row) {
        QString reason;
        const QString text = script_text(row, reason);
        ScriptLine line;
        if (text.isEmpty() || !ScriptLine::parse(text, line, reason)) {
            error = QString("step %1 (%2): %3").arg(row + 1).arg(at(row)->getAlias(), reason);
            return false;
        }
        compiled.append(line);
    }
    lines = compiled;
    return true;
}

bool ProgramSteps::check(int row, QString& error) const {
    QObject* plugin = plugin_for(at(row)->getCondType(), error);
    if (plugin == nullptr) {
        return false;
    }
    ConditionInterface condition(plugin);
    const bool valid = condition.check_cond_info(at(row), error);
    if (!condition.last_error().isEmpty()) {
        error = condition.last_error();
    }
    return valid;
}

bool ProgramSteps::save(const QString& path, QString& error) const {
    QVector<StoredStep> stored;
    for (const auto& step : steps_) {
        stored.append({step->getCondType(), step->getAlias(), step->getXmlInfo()});
    }
    return ProgramFile::write(path, stored, error);
}

bool ProgramSteps::open(const QString& path, QString& error) {
    QVector<StoredStep> stored;
    if (!ProgramFile::read(path, stored, error)) {
        return false;
    }
    std::vector<std::unique_ptr<AbsCondInfo>> opened;
    for (int i = 0; i < stored.size(); ++i) {
        QString reason;
        QObject* plugin = plugin_for(stored[i].type, reason);
        ConditionInterface condition(plugin);
        AbsCondInfo* record =
            plugin ? condition.xml_info_to_cond_info(stored[i].alias, stored[i].json) : nullptr;
        if (record == nullptr) {
            if (plugin != nullptr) {
                reason = condition.last_error().isEmpty() ? "the plug-in made no record"
                                                          : condition.last_error();
            }
            error = QString("step %1 (%2): %3").arg(i + 1).arg(stored[i].alias, reason);
            return false;
        }
        opened.emplace_back(record);
    }
    steps_ = std::move(opened);
    return true;
}

QString ProgramSteps::unused_alias(const QString& type) const {
    for (int n = 1;; ++n) {
        const QString alias = QString("%1_%2").arg(type).arg(n);
        bool used = false;
        for (const auto& step : steps_) {
            used = used || step->getAlias() == alias;
        }
        if (!used) {
            return alias;
        }
    }
}

void ProgramSteps::name(AbsCondInfo* record) const {
    bool used = record->getAlias().isEmpty();
    for (const auto& step : steps_) {
        used = used || step->getAlias() == record->getAlias();
    }
    if (used) {
        record->setAlias(unused_alias(record->getCondType()));
    }
}
