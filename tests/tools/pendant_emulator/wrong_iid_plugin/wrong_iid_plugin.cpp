// A Qt plug-in made for another application: valid metadata with a foreign interface id. The
// pendant must pass it over without creating it.

#include <QObject>

class WrongIidPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.ImageFilterPlugin" FILE "wrong_iid_plugin.json")
};

#include "wrong_iid_plugin.moc"
