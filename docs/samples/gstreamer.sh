gst-launch-1.0 -q videotestsrc num-buffers=100 \
    ! video/x-raw,format=I420,width=720,height=576 \
    ! lumalaneconvert brightness=0.05 contrast=1.2 saturation=0.5 \
    ! video/x-raw,format=BGRx ! "${SINK:-autovideosink}"
