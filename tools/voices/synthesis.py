"""Speech by Festival and its voice cmu_us_slt_arctic_hts."""

import pathlib
import subprocess
import tempfile

from scipy.io import wavfile

PACE = 1.2


def speak(texts):
    """The rate in Hz, and one array of samples (full scale 1) for each of `texts`."""
    with tempfile.TemporaryDirectory() as folder:
        files = [pathlib.Path(folder, f"{i}.wav") for i in range(len(texts))]
        commands = [
            "(voice_cmu_us_slt_arctic_hts)",
            f'(set! hts_engine_params (append hts_engine_params (list (list "-r" {PACE}))))',
        ]
        commands += [
            f'(utt.save.wave (utt.synth (Utterance Text "{text}")) "{file}" (quote riff))'
            for text, file in zip(texts, files)
        ]
        script = pathlib.Path(folder, "speak.scm")
        script.write_text("\n".join(commands))
        subprocess.run(["festival", "--batch", str(script)], check=True)
        recordings = [wavfile.read(file) for file in files]
    rates = {rate for rate, _ in recordings}
    assert len(rates) == 1, f"Festival answered several rates: {rates}"
    return rates.pop(), [samples / 32768.0 for _, samples in recordings]
