import com.google.zxing.BarcodeFormat;
import com.google.zxing.BinaryBitmap;
import com.google.zxing.DecodeHintType;
import com.google.zxing.MultiFormatReader;
import com.google.zxing.PlanarYUVLuminanceSource;
import com.google.zxing.ReaderException;
import com.google.zxing.common.HybridBinarizer;
import java.io.DataInputStream;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.util.EnumMap;
import java.util.List;
import java.util.Map;

// Reads codes off grey pictures. Standard input has a line "FORMAT WIDTH HEIGHT" for each picture,
// followed by its pixels, a byte each. Standard output has a line for each: what the code holds, as UTF-8
// in hexadecimal digits, or nothing.
public class ReadCodes {
    public static void main(String[] arguments) throws IOException {
        DataInputStream input = new DataInputStream(new java.io.BufferedInputStream(System.in, 1 << 20));
        StringBuilder answers = new StringBuilder();
        for (String line = line(input); line != null; line = line(input)) {
            String[] words = line.split(" ");
            int width = Integer.parseInt(words[1]);
            int height = Integer.parseInt(words[2]);
            byte[] pixels = new byte[width * height];
            input.readFully(pixels);
            answers.append(read(BarcodeFormat.valueOf(words[0]), pixels, width, height)).append('\n');
        }
        System.out.print(answers);
    }

    private static String line(DataInputStream input) throws IOException {
        StringBuilder line = new StringBuilder();
        for (int next = input.read(); next != '\n'; next = input.read()) {
            if (next < 0) return null;
            line.append((char) next);
        }
        return line.toString();
    }

    private static String read(BarcodeFormat format, byte[] pixels, int width, int height) {
        Map<DecodeHintType, Object> hints = new EnumMap<>(DecodeHintType.class);
        hints.put(DecodeHintType.POSSIBLE_FORMATS, List.of(format));
        hints.put(DecodeHintType.TRY_HARDER, Boolean.TRUE);
        BinaryBitmap picture = new BinaryBitmap(new HybridBinarizer(
            new PlanarYUVLuminanceSource(pixels, width, height, 0, 0, width, height, false)));
        try {
            return digits(new MultiFormatReader().decode(picture, hints).getText());
        } catch (ReaderException unread) {
            return "";
        }
    }

    private static String digits(String text) {
        StringBuilder digits = new StringBuilder();
        for (byte each : text.getBytes(StandardCharsets.UTF_8)) digits.append(String.format("%02x", each));
        return digits.toString();
    }
}
