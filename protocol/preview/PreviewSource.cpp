#include "PreviewSource.h"

#include <QTimer>

namespace Norlis::Social {

CompletedFetch::CompletedFetch(PreviewSource::Result result, PreviewSource::Done done)
{
    QTimer::singleShot(0, [guard = lifetime.Watch(), result = std::move(result), done = std::move(done)] {
        if (guard) {
            done(result);
        }
    });
}

} // namespace Norlis::Social
