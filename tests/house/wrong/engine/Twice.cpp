float loudest(const float* samples, int count) {
    float peak = 0;
    require(count > 0);
    for (int i = 0; i < count; ++i) {
        const float magnitude = samples[i] < 0 ? -samples[i] : samples[i];
        peak = magnitude > peak ? magnitude : peak;
    }
    return peak;
}

float loudestOfVoice(const float* samples, int count) {
    float peak = 0;
    require(count > 0);
    for (int i = 0; i < count; ++i) {
        const float magnitude = samples[i] < 0 ? -samples[i] : samples[i];
        peak = magnitude > peak ? magnitude : peak;
    }
    return peak;
}
