#ifndef BENCH_PAGES_PAGE_SESSION_H
#define BENCH_PAGES_PAGE_SESSION_H

#include <QString>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <functional>

class QTemporaryDir;

// Helpers of the pages' programs: a private settings store with the pendant's screen
// resolution, waiting with the event loop running, and finding a page's widgets.
namespace page_session {

// Points the pendant's settings store at a temporary folder holding "Displays/Resolution";
// call before the first page is made.
void use_resolution(QTemporaryDir& folder, const QString& resolution);

// Prints every log line on stderr.
void log_to_stderr();

// Runs the event loop until condition holds or timeout_ms passes; true when it held.
bool wait_for(const std::function<bool()>& condition, int timeout_ms = 10000);

// The child of root named name, of type T; ends the program if there is none.
template <typename T>
T* child(QWidget* root, const char* name) {
    T* found = root->findChild<T*>(QString::fromLatin1(name));
    if (nullptr == found) {
        std::fprintf(stderr, "no widget %s\n", name);
        std::exit(1);
    }
    return found;
}

}  // namespace page_session

#endif
