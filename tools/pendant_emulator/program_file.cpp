#include "tools/pendant_emulator/program_file.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

const char* const ProgramFile::FORMAT = "pendant-emulator program";

namespace {

bool read_step(const QJsonValue& value, int number, StoredStep& step, QString& error) {
    const QJsonObject object = value.toObject();
    const QJsonValue type = object.value("type");
    const QJsonValue alias = object.value("alias");
    const QJsonValue json = object.value("json");
    if (!value.isObject() || !type.isString() || !json.isString() ||
        !(alias.isString() || alias.isUndefined())) {
        error =
            QString("step %1 is not {\"type\": text, \"alias\": text, \"json\": text}").arg(number);
        return false;
    }
    if (type.toString().isEmpty()) {
        error = QString("step %1 has an empty type").arg(number);
        return false;
    }
    step = {type.toString(), alias.toString(), json.toString()};
    return true;
}

}  // namespace

QByteArray ProgramFile::to_json(const QVector<StoredStep>& steps) {
    QJsonArray array;
    for (const StoredStep& step : steps) {
        array.append(QJsonObject{{"type", step.type}, {"alias", step.alias}, {"json", step.json}});
    }
    const QJsonObject document{{"format", FORMAT}, {"version", VERSION}, {"steps", array}};
    return QJsonDocument(document).toJson(QJsonDocument::Indented);
}

bool ProgramFile::from_json(const QByteArray& json, QVector<StoredStep>& steps, QString& error) {
    QJsonParseError parse_error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parse_error);
    if (!document.isObject()) {
        error = parse_error.error != QJsonParseError::NoError
                    ? QString("not JSON: %1 at offset %2")
                          .arg(parse_error.errorString())
                          .arg(parse_error.offset)
                    : QString("the document is not a JSON object");
        return false;
    }
    const QJsonObject object = document.object();
    if (object.value("format").toString() != FORMAT) {
        error = QString("\"format\" is not \"%1\"").arg(FORMAT);
        return false;
    }
    if (object.value("version").toInt() != VERSION) {
        error = QString("version %1 is not %2").arg(object.value("version").toInt()).arg(VERSION);
        return false;
    }
    if (!object.value("steps").isArray()) {
        error = "\"steps\" is not a list";
        return false;
    }
    QVector<StoredStep> read;
    const QJsonArray array = object.value("steps").toArray();
    for (int i = 0; i < array.size(); ++i) {
        StoredStep step;
        if (!read_step(array[i], i + 1, step, error)) {
            return false;
        }
        read.append(step);
    }
    steps = read;
    return true;
}

bool ProgramFile::write(const QString& path, const QVector<StoredStep>& steps, QString& error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(to_json(steps)) < 0 || !file.commit()) {
        error = QString("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

bool ProgramFile::read(const QString& path, QVector<StoredStep>& steps, QString& error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QString("cannot read %1: %2").arg(path, file.errorString());
        return false;
    }
    if (!from_json(file.readAll(), steps, error)) {
        error = QString("%1: %2").arg(path, error);
        return false;
    }
    return true;
}
