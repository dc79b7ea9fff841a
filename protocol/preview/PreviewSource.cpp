#include "PreviewSource.h"

#include <QTimer>

namespace Norlis::Social {

CompletedFetch::CompletedFetch(PreviewSource::Result result, PreviewSource::Done done)
{
    QTimer::singleShot(0, this, [result = std::move(result), done = std::move(done)] { done(result); });
}

} // namespace Norlis::Social
