// The application object as the helpers see it: only its image ratio, set by the test.
#pragma once

namespace rendering {

void setImageRatio(double ratio);

}
