"""Structural similarity of two grey pictures, after Wang, Bovik, Sheikh and Simoncelli (2004)."""
from camera import blurred

WINDOW = 1.5  # pixels, standard deviation of the Gaussian window
C1, C2 = 0.01 ** 2, 0.03 ** 2


def ssim(one, other):
    """Of greys from 0 to 1; 1 is the same picture."""
    mean_one, mean_other = blurred(one, WINDOW), blurred(other, WINDOW)
    variance_one = blurred(one * one, WINDOW) - mean_one ** 2
    variance_other = blurred(other * other, WINDOW) - mean_other ** 2
    covariance = blurred(one * other, WINDOW) - mean_one * mean_other
    light = (2 * mean_one * mean_other + C1) / (mean_one ** 2 + mean_other ** 2 + C1)
    structure = (2 * covariance + C2) / (variance_one + variance_other + C2)
    return float((light * structure).mean())
