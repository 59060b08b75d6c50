#include "support/RequestListener.h"

void RequestListener::onReady(RequestHandle h)
{
    requests.push_back(h);
    if (whenCalled)
        whenCalled();
}
