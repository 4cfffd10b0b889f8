// SPDX-License-Identifier: MIT
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "benchmarks/peers/objects_peer.h"

namespace bench {

template <class T>
void openCvFill(T* pixels, int side, int seedX, int seedY, T value) {
    cv::setNumThreads(1);
    cv::Mat picture(side, side, cv::DataType<T>::type, pixels);
    cv::floodFill(picture, cv::Point(seedX, seedY), cv::Scalar(value), nullptr, cv::Scalar(), cv::Scalar(), 4);
}

template void openCvFill(unsigned char*, int, int, int, unsigned char);
template void openCvFill(int*, int, int, int, int);

void openCvLabel(const unsigned char* mask, int* labels, int side) {
    cv::setNumThreads(1);
    const cv::Mat picture(side, side, CV_8UC1, const_cast<unsigned char*>(mask));
    cv::Mat labelled(side, side, CV_32SC1, labels);
    cv::connectedComponents(picture, labelled, 4, CV_32S);
}

}  // namespace bench
